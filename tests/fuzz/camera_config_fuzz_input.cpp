// A camera's file vx_stream<id>.json: any bytes as the file. A file that
// reads is saved and read again, and must keep every value.
#include <string>

#include "config/camera_config.h"
#include "fuzz_registry.h"
#include "fuzz_support.h"

namespace vx::fuzz {
namespace {

using namespace vx::config;

constexpr std::int32_t recognitionPort = 1234;
constexpr std::int32_t controlPort = 1235;

void readCameraConfigInput(const std::uint8_t* data, std::size_t size)
{
    SilencedStderr silenced;
    const std::string path = cameraFilePath(fuzzFolder().string(), 1);
    putFile(path, inputText(data, size));
    CameraConfig config;
    if (loadCamera(path, config, 300)) {
        check(saveCamera(path, config, recognitionPort, controlPort), "a camera that read won't save");
        CameraConfig again;
        check(loadCamera(path, again, 300), "a saved camera won't read");
        check(cameraConfigText(again, recognitionPort, controlPort) ==
                  cameraConfigText(config, recognitionPort, controlPort),
              "a saved camera changed a value");
    }
    removeKeptCopies(fuzzFolder());
}

const FuzzRegistration registered{
    "camera_config", readCameraConfigInput,
    {"\"Common\"", "\"Recognition\"", "\"Control\"", "\"Buttons\"", "\"ControlReport\"", "\"ID\"", "\"name\"", "\"videoName\"", "\"videoPath\"", "\"videoChunk\"", "\"autoRun\"", "\"tcp\"", "\"reconnect\"", "\"fps\"", "\"width\"", "\"height\"", "\"x\"", "\"y\"", "\"linesY\"", "\"useZone\"", "\"Square\"", "\"minSquare\"", "\"maxSquare\"", "\"whiteLists\"", "\"nameWhiteList\"", "\"conditionsSignals\"", "\"numSignal\"", "\"on\"", "\"typeOpen\"", "\"portServer\"", "\"ControlPortServer\"", "\"timeReportStart\"", "\"timeDailyReport\"", "0.5", "1e400"}};

} // namespace
} // namespace vx::fuzz
