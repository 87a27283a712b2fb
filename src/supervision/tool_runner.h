#pragma once
// Runs a command-line tool and takes what it printed: standard output and
// standard error through one anonymous pipe, read only after the process
// has ended. The tool gets up to 20 seconds; one that runs longer is left
// running, its handles closed, and nothing of its output is read.
#include <filesystem>
#include <string>

namespace vx::supervision {

inline constexpr int toolWaitMs = 20000;

struct ToolRun {
    bool started = false;   // false when the process couldn't be started
    bool ended = false;     // false when the wait ran out
    std::string output;     // the bytes as printed; empty unless ended
};

// `commandLine` is UTF-8; its program is looked for in `searchFolder`
// first, then on PATH; the working directory is `searchFolder`.
ToolRun runTool(const std::string& commandLine, const std::filesystem::path& searchFolder,
                int waitMs = toolWaitMs);

} // namespace vx::supervision
