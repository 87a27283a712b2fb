// The control service's file vx_control_config.json: any bytes as the file.
// Every file reads (a broken one leaves the record as it was); it is saved
// and read again, and must keep every value.
#include <string>

#include "config/control_config.h"
#include "fuzz_registry.h"
#include "fuzz_support.h"

namespace vx::fuzz {
namespace {

using namespace vx::config;

void readControlConfigInput(const std::uint8_t* data, std::size_t size)
{
    SilencedStderr silenced;
    const std::string dir = fuzzFolder().string();
    putFile(fuzzFolder() / controlConfigFileName, inputText(data, size));
    ControlSrvConfig config;
    check(loadControlGlobal(dir, config), "a file that opens didn't read");
    check(saveControlGlobal(dir, config), "a config that read won't save");
    ControlSrvConfig again;
    check(loadControlGlobal(dir, again), "a saved config won't read");
    check(controlConfigText(again) == controlConfigText(config), "a saved config changed a value");
    removeKeptCopies(fuzzFolder());
}

const FuzzRegistration registered{
    "control_config", readControlConfigInput,
    {"\"port\"", "\"httpLogger\"", "\"modeDB\"", "\"equalLatinCyr\"", "\"notReturnServSymb\"", "\"autoUpdateListsInControl\"", }};

} // namespace
} // namespace vx::fuzz
