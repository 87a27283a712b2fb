#include "journal_lines.h"

#include <cstring>
#include <fstream>

namespace vx::journal {

namespace {

// "[dddd-dd-dd dd:dd:dd]" at the start; the length of the stamp or 0.
std::size_t stampLength(const std::string& line)
{
    static const char shape[] = "[dddd-dd-dd dd:dd:dd]";
    const std::size_t size = sizeof shape - 1;
    if (line.size() < size)
        return 0;
    for (std::size_t i = 0; i < size; ++i) {
        const char c = line[i];
        if (shape[i] == 'd' ? (c < '0' || c > '9') : c != shape[i])
            return 0;
    }
    return size;
}

} // namespace

LineKind kindOfLine(const std::string& line)
{
    const std::size_t stamp = stampLength(line);
    if (stamp == 0)
        return kindOther;
    if (line.size() > stamp && line[stamp] == ' ')
        return kindStandardError;
    static const char* const names[] = {"[TRACE]", "[DEBUG]", "[INFO]", "[WARNING]", "[ERROR]", "[CRITICAL]"};
    for (int level = 0; level < 6; ++level)
        if (line.compare(stamp, std::strlen(names[level]), names[level]) == 0)
            return static_cast<LineKind>(level);
    return kindPlain;
}

int filterLevelOf(LineKind kind)
{
    if (kind <= kindCritical)
        return kind;
    return kind == kindStandardError ? kindError : kindInfo;
}

LogFollower::Batch LogFollower::readNew()
{
    Batch batch;
    std::error_code ec;
    const std::uintmax_t size = std::filesystem::file_size(file_, ec);
    if (ec)
        return batch;   // not there (yet): nothing new
    if (size < offset_) {
        batch.restarted = true;
        offset_ = 0;
        pending_.clear();
    }
    if (size == offset_)
        return batch;
    std::ifstream in(file_, std::ios::binary);
    in.seekg(static_cast<std::streamoff>(offset_));
    std::string chunk(static_cast<std::size_t>(size - offset_), '\0');
    in.read(chunk.data(), static_cast<std::streamsize>(chunk.size()));
    chunk.resize(static_cast<std::size_t>(in.gcount()));
    offset_ += chunk.size();
    pending_ += chunk;
    std::size_t start = 0;
    for (std::size_t end; (end = pending_.find('\n', start)) != std::string::npos; start = end + 1) {
        std::size_t stop = end;
        if (stop > start && pending_[stop - 1] == '\r')
            --stop;
        batch.lines.push_back(pending_.substr(start, stop - start));
    }
    pending_.erase(0, start);
    return batch;
}

} // namespace vx::journal
