#pragma once
// The system log: one text file that tells what the manager did. LogBuffer is
// that file's writer and, once attached, also the stream buffer behind
// std::cerr, so everything any part prints to standard error lands in the
// same file with a time stamp. A second instance writes perf.txt.
//
// Two kinds of line reach the file:
//   writeLine / log:      "[2024-05-01 10:20:30]text" / "[...][ERROR]text"
//   standard error path:  "[2024-05-01 10:20:30] text"   (one blank after "]")
// Text goes out byte for byte (Windows-1251), each line feed as CR LF, as the
// log has always been read on the manager's first platform.
#include <atomic>
#include <cstdint>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <functional>
#include <mutex>
#include <streambuf>
#include <string>

namespace vx::maintenance {

// What happens to an existing file, and which of "Start"/"End" are written.
enum class LogMode : std::int32_t {
    appendStartEnd = 0,    // appended to; "Start" at open, "End" at close
    archiveTruncate = 1,   // archived, then truncated; "Start" at open (the system log)
    appendQuiet = 2,       // appended to; no "Start", no "End"
    appendStart = 3,       // appended to; "Start" at open (perf.txt)
};

enum LogLevel : int {
    logTrace = 0,
    logDebug = 1,
    logInfo = 2,
    logWarning = 3,
    logError = 4,
    logCritical = 5,
};

// "TRACE" … "CRITICAL"; empty outside 0..5.
const char* logLevelName(int level);
// A configured systemLevel as the log takes it: below 0 is 0, above 5 is 5.
std::int32_t clampLogLevel(std::int32_t level);

class LogBuffer : public std::streambuf {
public:
    using Clock = std::function<std::time_t()>;

    // Opens the log. In archiveTruncate mode the previous file first goes to
    // the archive (log_archive.h); a failure there prints "Failed to archive
    // log file: <what>" and the exception leaves the constructor. A file that
    // won't open prints "Failed to open log file!" and leaves an object whose
    // writes go nowhere. `clock` gives the wall clock (tests pin it).
    LogBuffer(const std::filesystem::path& path, LogMode mode, Clock clock = nullptr);
    ~LogBuffer() override;
    LogBuffer(const LogBuffer&) = delete;
    LogBuffer& operator=(const LogBuffer&) = delete;

    // One time-stamped line without a level, never filtered.
    void writeLine(std::string text);
    // A levelled line when `level` is at least minLevel.
    void log(int level, const std::string& text);

    // Messages below this level are dropped (3 until the owner sets it).
    std::int32_t minLevel() const { return minLevel_.load(std::memory_order_relaxed); }
    // The owner clamps first (clampLogLevel); the value is taken as given.
    void setMinLevel(std::int32_t level) { minLevel_.store(level, std::memory_order_relaxed); }
    // The cheap test of a call site: would a line of `level` be written?
    bool accepts(int level) const { return level >= minLevel(); }

    // Writes "End" in appendStartEnd mode and closes the file; later lines
    // go nowhere. The destructor does the same.
    void close();
    bool isOpen() const { return file_.is_open(); }
    LogMode mode() const { return mode_; }

protected:
    int_type overflow(int_type c) override;
    std::streamsize xsputn(const char* data, std::streamsize count) override;

private:
    std::string timeStamp() const;
    // Writes bytes as the text-mode file would: "\n" becomes "\r\n".
    void putText(const char* data, std::size_t size);
    void putStreamByte(char byte);

    std::ofstream file_;
    LogMode mode_;
    bool atLineStart_ = true;
    std::mutex mutex_;
    std::atomic<std::int32_t> minLevel_{3};
    Clock clock_;
};

// Points std::cerr at `log`. The buffer it replaces is not kept.
void attachToStandardError(LogBuffer& log);

} // namespace vx::maintenance
