// The config files of the manager and its services: any bytes as the file.
// A file that reads is saved and read again, and must keep every value.
#include <string>
#include <vector>

#include "config/camera_config.h"
#include "config/control_config.h"
#include "config/main_config.h"
#include "config/messenger_config.h"
#include "config/receiver_samples.h"
#include "config/recognition_config.h"
#include "config/token_cipher.h"
#include "config/white_list.h"
#include "config/white_list_registry.h"
#include "fuzz_registry.h"
#include "fuzz_support.h"

namespace vx::fuzz {
namespace {

using namespace vx::config;

constexpr std::int32_t recognitionPort = 1234;
constexpr std::int32_t controlPort = 1235;

const std::string& dir()
{
    static const std::string folder = fuzzFolder().string();
    return folder;
}

// The input as the file `name` of the fuzz folder; a record that `load`s is
// saved, loaded again and must give the same `text`. Returns the first record.
template <class Record, class Load, class Save, class Text>
Record roundTrip(const std::uint8_t* data, std::size_t size, const std::string& name, Load load, Save save, Text text)
{
    CapturedStderr silenced;
    writeFileBytes(fuzzFolder() / name, inputText(data, size));
    Record record;
    if (load(record)) {
        check(save(record), "a record that read won't save");
        Record again;
        check(load(again), "a saved record won't read");
        check(text(again) == text(record), "a saved record changed a value");
    }
    removeKeptCopies(fuzzFolder());
    return record;
}

void readMainConfigInput(const std::uint8_t* data, std::size_t size)
{
    CapturedStderr silenced;
    writeFileBytes(fuzzFolder() / mainConfigFileName, inputText(data, size));
    MainConfig config;
    MainConfigFolders folders;
    auto textOf = [](const MainConfig& c) {
        std::vector<std::string> names;
        return mainConfigText(c, {}, {}, names);
    };
    // A text the writer can't put back in a form that reads again (a tab in
    // recogFormat) isn't saved: the file stays as it was.
    if (loadConfig(dir(), dir(), config, folders) && saveConfig(dir(), config, {}, {})) {
        MainConfig again;
        check(loadConfig(dir(), dir(), again, folders), "a saved config won't read");
        check(textOf(again) == textOf(config), "a saved config changed a value");
    }
    removeKeptCopies(fuzzFolder());
}

void readCameraConfigInput(const std::uint8_t* data, std::size_t size)
{
    const std::string path = cameraFilePath(dir(), 1);
    roundTrip<CameraConfig>(
        data, size, cameraFileName(1), [&](CameraConfig& c) { return loadCamera(path, c, 300); },
        [&](CameraConfig& c) { return saveCamera(path, c, recognitionPort, controlPort); },
        [](const CameraConfig& c) { return cameraConfigText(c, recognitionPort, controlPort); });
}

void readRecognitionConfigInput(const std::uint8_t* data, std::size_t size)
{
    const RecognitionSrvConfig config = roundTrip<RecognitionSrvConfig>(
        data, size, recognitionConfigFileName, [](RecognitionSrvConfig& c) { return loadRecogGlobal(dir(), c); },
        [](RecognitionSrvConfig& c) { return saveRecogGlobal(dir(), c); },
        [](const RecognitionSrvConfig& c) { return recognitionConfigText(c); });
    modelConfigName(config.modeConfig);
}

// Every control file reads (a broken one leaves the record as it was).
void readControlConfigInput(const std::uint8_t* data, std::size_t size)
{
    roundTrip<ControlSrvConfig>(
        data, size, controlConfigFileName,
        [](ControlSrvConfig& c) {
            check(loadControlGlobal(dir(), c), "a file that opens didn't read");
            return true;
        },
        [](ControlSrvConfig& c) { return saveControlGlobal(dir(), c); },
        [](const ControlSrvConfig& c) { return controlConfigText(c); });
}

// The enciphered tokens are kept too, and any text comes back from the cipher.
void readMessengerConfigInput(const std::uint8_t* data, std::size_t size)
{
    roundTrip<MessengersConfig>(
        data, size, messengersConfigFileName,
        [](MessengersConfig& c) {
            loadMessengers(dir(), c, controlPort);
            return true;
        },
        [](MessengersConfig& c) { return saveMessengers(dir(), c); },
        [](const MessengersConfig& c) { return messengersConfigText(c); });
    const std::string input = inputText(data, size);
    check(decipherToken(encipherToken(input)) == input, "a token doesn't come back from its cipher");
    decipherToken(input);
}

// The registry of white lists on its own keeps every list's name and file in
// their order.
void readWhiteListRegistryInput(const std::uint8_t* data, std::size_t size)
{
    roundTrip<WhiteListTable>(
        data, size, whiteListsRegistryFile,
        [](WhiteListTable& t) {
            loadWhiteListsList(t, dir());
            return true;
        },
        [](WhiteListTable& t) { return saveWhiteListsList(t, dir()); },
        [](const WhiteListTable& t) { return whiteListsRegistryText(t); });
}

// The catalogue of ready-made requests, which the manager only reads:
// "Custom" always stands first.
void readReceiverSamplesInput(const std::uint8_t* data, std::size_t size)
{
    CapturedStderr silenced;
    writeFileBytes(fuzzFolder() / receiverSamplesFileName, inputText(data, size));
    std::vector<ReceiverSample> samples;
    int cleared = 0;
    loadSignals(dir(), samples, [&cleared] { ++cleared; });
    check(!samples.empty() && samples[0].name == "Custom", "the built-in sample isn't first");
    check(cleared == 1, "the file that opened didn't clear the white lists once");
}

const FuzzRegistration mainConfig{
    "main_config", readMainConfigInput,
    {"\"systemLogPath\"", "\"systemLevel\"", "\"recogLogPath\"", "\"recogFormat\"", "\"dataTimeFormat\"",
     "\"reportsPath\"", "\"videoPath\"", "\"saveImage\"", "\"sizeImage\"", "\"timeLife\"", "\"divideLogRecog\"",
     "\"videoChunk\"", "\"maxSizeVideoDirectoryMb\"", "\"autoRunManager\"", "\"videoStreams\"",
     "\"autoRunStreams\"", "\"startStatus\"", "\"globalRestart\"", "\"xWindow\"", "\"display\"", "\"perfLog\"",
     "\"vx_stream1.json\"", "{plate}", "{datetime}"}};

const FuzzRegistration cameraConfig{
    "camera_config", readCameraConfigInput,
    {"\"Common\"", "\"Recognition\"", "\"Control\"", "\"Buttons\"", "\"ControlReport\"", "\"ID\"", "\"name\"", "\"videoName\"", "\"videoPath\"", "\"videoChunk\"", "\"autoRun\"", "\"tcp\"", "\"reconnect\"", "\"fps\"", "\"width\"", "\"height\"", "\"x\"", "\"y\"", "\"linesY\"", "\"useZone\"", "\"Square\"", "\"minSquare\"", "\"maxSquare\"", "\"whiteLists\"", "\"nameWhiteList\"", "\"conditionsSignals\"", "\"numSignal\"", "\"on\"", "\"typeOpen\"", "\"portServer\"", "\"ControlPortServer\"", "\"timeReportStart\"", "\"timeDailyReport\"", "0.5", "1e400"}};

const FuzzRegistration recognitionConfig{
    "recognition_config", readRecognitionConfigInput,
    {"\"plateTemplates\"", "\"templates\"", "\"ru\"", "\"abh\"", "\"rso\"", "\"bigSymbolModel\"", "\"port\"", "\"minSymbolsPlate\"", "\"maxSymbolsPlate\"", "\"minPlateHeight\"", "\"minPlateWidth\"", "\"modeConfig\"", "\"mode\"", "\"gpuObjects\"", "\"turn\"", "\"gpu\"", "\"detectConfThresh\"", "\"detectConfPerson\"", "\"detectConfVehicle\"", "0.25", "NaN", "1e40"}};

const FuzzRegistration controlConfig{
    "control_config", readControlConfigInput,
    {"\"port\"", "\"httpLogger\"", "\"modeDB\"", "\"equalLatinCyr\"", "\"notReturnServSymb\"", "\"autoUpdateListsInControl\"", }};

const FuzzRegistration messengerConfig{
    "messenger_config", readMessengerConfigInput,
    {"\"port\"", "\"on\"", "\"channels\"", "\"name\"", "\"channelID\"", "\"typeMessenger\"", "\"token\"", "\"chatID\"", "\"delaySame\"", "\"delaySameMS\"", "\"delayAny\"", "\"delayAnyMS\"", "\"image\"", "\"server\"", "\"sender\"", "\"receiver\"", "\"00112233445566778899aabbccddeeff\""}};

const FuzzRegistration whiteListRegistry{
    "white_list_registry", readWhiteListRegistryInput,
    {"\"whitelists\"", "\"lists\"", "\"file\"", "\"name\"", "\"list1.list.csv\"", "\"empty.list.csv\""}};

const FuzzRegistration receiverSamples{
    "receiver_samples", readReceiverSamplesInput,
    {"\"templates\"", "\"name\"", "\"type\"", "\"URL\"", "\"body\"", "\"image\"", "\"smallImage\"", "\"plateImage\"", "\"carImage\"", "\"contentType\"", }};

} // namespace
} // namespace vx::fuzz
