#include "core/discovery_tool.h"

#include "config/text_codec.h"
#include "supervision/tool_runner.h"

namespace vx::core {

dialogs::ToolCall discoveryToolCall(const std::filesystem::path& toolFolder)
{
    return [toolFolder](const std::string& commandLine) {
        const supervision::ToolRun run = supervision::runTool(config::cp1251ToUtf8(commandLine), toolFolder);
        return dialogs::ToolOutput{run.started, run.output};
    };
}

} // namespace vx::core
