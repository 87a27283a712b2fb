// The system log as the journal viewer reads it: the kind of each line, and
// the follower of the growing file. A file read in two steps, as it grows,
// gives the same lines as one read of the whole.
#include <string>
#include <vector>

#include "fuzz_registry.h"
#include "fuzz_support.h"
#include "journal_lines.h"

namespace vx::fuzz {
namespace {

std::vector<std::string> readAll(journal::LogFollower& follower)
{
    journal::LogFollower::Batch batch = follower.readNew();
    for (const std::string& line : batch.lines) {
        check(line.find('\n') == std::string::npos, "a line holds a line end");
        const journal::LineKind kind = journal::kindOfLine(line);
        check(kind >= journal::kindTrace && kind <= journal::kindOther, "a line of no kind");
        const int level = journal::filterLevelOf(kind);
        check(level >= 0 && level <= 5, "a kind filters at no level");
    }
    return batch.lines;
}

void readJournalInput(const std::uint8_t* data, std::size_t size)
{
    const std::string input = inputText(data, size);
    const auto path = fuzzFolder() / "vxsystem.log";
    writeFileBytes(path, input);
    journal::LogFollower whole(path);
    const std::vector<std::string> lines = readAll(whole);

    const std::size_t half = input.size() / 2;
    writeFileBytes(path, input.substr(0, half));
    journal::LogFollower growing(path);
    std::vector<std::string> stepwise = readAll(growing);
    writeFileBytes(path, input);
    if (half > 0) {   // the same length again would not be seen as growth
        const std::vector<std::string> rest = readAll(growing);
        stepwise.insert(stepwise.end(), rest.begin(), rest.end());
        check(stepwise == lines, "a growing file read in steps gives other lines");
    }
    journal::kindOfLine(input);
}

const FuzzRegistration registered{
    "journal_lines", readJournalInput,
    {"[2024-05-01 10:20:30]", "[TRACE]", "[DEBUG]", "[INFO]", "[WARNING]", "[ERROR]", "[CRITICAL]", "] ", "\r\n", "\r", "Start", "Close", }};

} // namespace
} // namespace vx::fuzz
