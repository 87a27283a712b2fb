#pragma once
// Reading the system log for the journal viewer: the kind of each line, and
// a reader that follows the file as the manager writes it.
//
// The log's lines (Windows-1251, CR LF):
//   "[2024-05-01 10:20:30][ERROR]text"   a levelled line
//   "[2024-05-01 10:20:30]text"          a line without a level (Start, the version, Close)
//   "[2024-05-01 10:20:30] text"         a line that came through standard error
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace vx::journal {

enum LineKind : int {
    kindTrace = 0,
    kindDebug = 1,
    kindInfo = 2,
    kindWarning = 3,
    kindError = 4,
    kindCritical = 5,
    kindPlain = 6,           // no level
    kindStandardError = 7,   // came through standard error: failure texts
    kindOther = 8,           // not in the log's form at all (e.g. a cut line)
};

// The kind of one line (without its line end).
LineKind kindOfLine(const std::string& line);

// The level a kind counts as when the viewer filters by level: a plain line
// as INFO, a standard error line as ERROR, anything else as INFO.
int filterLevelOf(LineKind kind);

// Follows a growing file. Each read returns the complete lines added since
// the last one, without their CR LF; an unfinished last line waits for its
// end. A file that got shorter was started anew (the manager truncates its
// log at each start): the reader begins again from its start and says so.
class LogFollower {
public:
    explicit LogFollower(std::filesystem::path file) : file_(std::move(file)) {}

    struct Batch {
        bool restarted = false;           // the lines read so far are void
        std::vector<std::string> lines;   // Windows-1251
    };
    Batch readNew();
    const std::filesystem::path& file() const { return file_; }

private:
    std::filesystem::path file_;
    std::uintmax_t offset_ = 0;
    std::string pending_;
};

} // namespace vx::journal
