#include "supervision/tool_runner.h"

#include "platform/process.h"

namespace vx::supervision {

ToolRun runTool(const std::string& commandLine, const std::filesystem::path& searchFolder, int waitMs)
{
    ToolRun run;
    platform::ProcessStartInfo info;
    info.commandLine = commandLine;
    info.searchFolder = searchFolder;
    info.workingDirectory = searchFolder;
    info.inheritHandles = true;
    info.noConsole = true;
    info.captureOutput = true;
    const std::unique_ptr<platform::StartedProcess> process = platform::startProcess(info);
    if (!process)
        return run;
    run.started = true;
    // The tool is never ended by us: at a timeout it goes on running and
    // only our end of the pipe is closed. Output past the pipe's buffer
    // holds the tool until we read, which we do only after its end, so such
    // a tool reaches the timeout as well.
    if (!process->waitForExit(waitMs))
        return run;
    run.ended = true;
    char buffer[4096];
    for (;;) {
        const long n = process->readOutput(buffer, sizeof buffer);
        if (n <= 0)
            break;
        run.output.append(buffer, static_cast<std::size_t>(n));
    }
    return run;
}

} // namespace vx::supervision
