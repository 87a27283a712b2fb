// The manager's own config file: any bytes as vx_main_config.json. A file
// that reads is saved and read again, and must keep every value.
#include <string>
#include <vector>

#include "config/main_config.h"
#include "fuzz_registry.h"
#include "fuzz_support.h"

namespace vx::fuzz {
namespace {

using namespace vx::config;

std::string textOf(const MainConfig& config)
{
    std::vector<std::string> names;
    return mainConfigText(config, {}, {}, names);
}

void readMainConfigInput(const std::uint8_t* data, std::size_t size)
{
    SilencedStderr silenced;
    const std::string dir = fuzzFolder().string();
    putFile(fuzzFolder() / mainConfigFileName, inputText(data, size));
    MainConfig config;
    MainConfigFolders folders;
    const bool read = loadConfig(dir, dir, config, folders);
    // A text the writer can't put back in a form that reads again (a tab in
    // recogFormat) isn't saved: the file stays as it was.
    if (read && saveConfig(dir, config, {}, {})) {
        MainConfig again;
        check(loadConfig(dir, dir, again, folders), "a saved config won't read");
        check(textOf(again) == textOf(config), "a saved config changed a value");
    }
    removeKeptCopies(fuzzFolder());
}

const FuzzRegistration registered{
    "main_config", readMainConfigInput,
    {"\"systemLogPath\"", "\"systemLevel\"", "\"recogLogPath\"", "\"recogFormat\"", "\"dataTimeFormat\"",
     "\"reportsPath\"", "\"videoPath\"", "\"saveImage\"", "\"sizeImage\"", "\"timeLife\"", "\"divideLogRecog\"",
     "\"videoChunk\"", "\"maxSizeVideoDirectoryMb\"", "\"autoRunManager\"", "\"videoStreams\"",
     "\"autoRunStreams\"", "\"startStatus\"", "\"globalRestart\"", "\"xWindow\"", "\"display\"", "\"perfLog\"",
     "\"vx_stream1.json\"", "{plate}", "{datetime}"}};

} // namespace
} // namespace vx::fuzz
