#include "maintenance/log_buffer.h"

#include <iostream>
#include <stdexcept>

#include "maintenance/log_archive.h"
#include "maintenance/local_time.h"

namespace vx::maintenance {

const char* logLevelName(int level)
{
    static const char* const names[] = {"TRACE", "DEBUG", "INFO", "WARNING", "ERROR", "CRITICAL"};
    return level >= 0 && level <= 5 ? names[level] : "";
}

std::int32_t clampLogLevel(std::int32_t level)
{
    return level < 0 ? 0 : (level > 5 ? 5 : level);
}

LogBuffer::LogBuffer(const std::filesystem::path& path, LogMode mode, Clock clock)
    : mode_(mode), clock_(clock ? std::move(clock) : Clock([] { return std::time(nullptr); }))
{
    if (mode_ == LogMode::archiveTruncate) {
        try {
            archiveLogFile(path);
        } catch (const std::exception& e) {
            std::cerr << "Failed to archive log file: " << e.what() << std::endl;
            throw;
        }
    }
    // Binary, with the CR LF of text mode written by putText, so the file
    // reads the same on every platform. Other programs may read it meanwhile.
    // The file is always written at its end (truncated first in mode 1), so
    // the crash capture's texts, appended to it through a descriptor of their
    // own, are never overwritten by a later line of this stream.
    if (mode_ == LogMode::archiveTruncate)
        std::ofstream(path, std::ios::out | std::ios::binary | std::ios::trunc);
    file_.open(path, std::ios::out | std::ios::binary | std::ios::app);
    if (!file_.is_open()) {
        std::cerr << "Failed to open log file!" << std::endl;
        return;
    }
    if (mode_ != LogMode::appendQuiet)
        writeLine("Start");
    file_ << std::unitbuf;
}

LogBuffer::~LogBuffer()
{
    close();
}

void LogBuffer::close()
{
    if (file_.is_open() && mode_ == LogMode::appendStartEnd)
        writeLine("End");
    std::lock_guard<std::mutex> lock(mutex_);
    file_.close();   // a failure only sets the stream's error state
}

std::string LogBuffer::timeStamp() const
{
    return formatLocalTime(clock_(), "%Y-%m-%d %H:%M:%S");
}

void LogBuffer::putText(const char* data, std::size_t size)
{
    std::size_t start = 0;
    for (std::size_t i = 0; i < size; ++i) {
        if (data[i] != '\n')
            continue;
        file_.write(data + start, static_cast<std::streamsize>(i - start));
        file_.write("\r\n", 2);
        start = i + 1;
    }
    file_.write(data + start, static_cast<std::streamsize>(size - start));
}

void LogBuffer::writeLine(std::string text)
{
    std::lock_guard<std::mutex> lock(mutex_);
    // No blank after "]": this is how writeLine lines differ from those that
    // come through standard error.
    std::string line = "[" + timeStamp() + "]";
    line += text;
    line += '\n';
    putText(line.data(), line.size());
    file_.flush();
}

void LogBuffer::log(int level, const std::string& text)
{
    if (level < minLevel())
        return;   // a level above 5 isn't rejected: it gets an empty name
    writeLine(std::string("[") + logLevelName(level) + "]" + text);
}

void LogBuffer::putStreamByte(char byte)
{
    if (atLineStart_) {
        const std::string prefix = "[" + timeStamp() + "] ";
        putText(prefix.data(), prefix.size());
        atLineStart_ = false;
    }
    putText(&byte, 1);
    if (byte == '\n') {
        file_.flush();
        atLineStart_ = true;
    }
}

// The standard-error path. Each call holds the line mutex only for its own
// bytes, so two threads never touch the file stream at the same moment; a
// text printed in several pieces can still meet a writeLine line between
// them, which the rare failure texts on this path accept.
LogBuffer::int_type LogBuffer::overflow(int_type c)
{
    if (traits_type::eq_int_type(c, traits_type::eof()))
        return c;
    std::lock_guard<std::mutex> lock(mutex_);
    putStreamByte(traits_type::to_char_type(c));
    return c;
}

std::streamsize LogBuffer::xsputn(const char* data, std::streamsize count)
{
    if (count < 1)
        return 0;
    std::lock_guard<std::mutex> lock(mutex_);
    for (std::streamsize i = 0; i < count; ++i)
        putStreamByte(data[i]);
    return count;
}

void attachToStandardError(LogBuffer& log)
{
    std::cerr.rdbuf(&log);
}

} // namespace vx::maintenance
