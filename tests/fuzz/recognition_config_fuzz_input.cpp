// The recognition service's file vx_recog_config_srv.json: any bytes as the
// file. A file that reads is saved and read again, and must keep every value.
#include <string>

#include "config/recognition_config.h"
#include "fuzz_registry.h"
#include "fuzz_support.h"

namespace vx::fuzz {
namespace {

using namespace vx::config;

void readRecognitionConfigInput(const std::uint8_t* data, std::size_t size)
{
    SilencedStderr silenced;
    const std::string dir = fuzzFolder().string();
    putFile(fuzzFolder() / recognitionConfigFileName, inputText(data, size));
    RecognitionSrvConfig config;
    if (loadRecogGlobal(dir, config)) {
        check(saveRecogGlobal(dir, config), "a config that read won't save");
        RecognitionSrvConfig again;
        check(loadRecogGlobal(dir, again), "a saved config won't read");
        check(recognitionConfigText(again) == recognitionConfigText(config), "a saved config changed a value");
    }
    modelConfigName(config.modeConfig);
    removeKeptCopies(fuzzFolder());
}

const FuzzRegistration registered{
    "recognition_config", readRecognitionConfigInput,
    {"\"plateTemplates\"", "\"templates\"", "\"ru\"", "\"abh\"", "\"rso\"", "\"bigSymbolModel\"", "\"port\"", "\"minSymbolsPlate\"", "\"maxSymbolsPlate\"", "\"minPlateHeight\"", "\"minPlateWidth\"", "\"modeConfig\"", "\"mode\"", "\"gpuObjects\"", "\"turn\"", "\"gpu\"", "\"detectConfThresh\"", "\"detectConfPerson\"", "\"detectConfVehicle\"", "0.25", "NaN", "1e40"}};

} // namespace
} // namespace vx::fuzz
