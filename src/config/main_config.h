#pragma once
// The manager's own settings, kept in vx_main_config.json.
#include <cstdint>
#include <string>
#include <vector>

namespace vx::config {

inline constexpr const char* mainConfigFileName = "vx_main_config.json";

struct MainConfig {
    std::string systemLogPath;
    std::int32_t systemLevel = 3;
    std::string recogLogPath;
    std::string recogFormat = "{datetime} number: {plate}, direction: {direction}";
    std::string dataTimeFormat = "Y-m-d H:M:S";
    std::string reportsPath;
    std::string videoPath;
    bool saveImage = false;
    std::int32_t sizeImage = 0;
    std::int32_t timeLife = 0;
    std::int32_t divideLogRecog = 0;
    std::int32_t videoChunk = 300;
    std::uint32_t maxSizeVideoDirectoryMb = 100;
    bool autoRunManager = false;
    std::vector<std::string> videoStreams;
    std::vector<bool> autoRunStreams;
    bool startStatus = false;
    bool globalRestart = false;
    std::int32_t xWindow = -1;
    std::int32_t yWindow = -1;
    std::int32_t wWindow = -1;
    std::int32_t hWindow = -1;
    std::int32_t display = 0;
    std::int32_t perfLog = 0;
};

// The default folders, rebuilt by every loadConfig from the folder it is
// given (the narrow form of baseDirectory). All 1251 text.
struct MainConfigFolders {
    std::string systemLogPath;   // folder + separator + "logs"
    std::string recogLogPath;    // the same
    std::string reportsPath;     // folder + separator + "reports"
    std::string videoPath;       // folder + separator + "videos"
};

MainConfigFolders derivedFolders(const std::string& folder);

// The text saveConfig emits for `config` with the given streams (UTF-8,
// "\n" line ends); the file name list it implies goes to `videoStreams`.
std::string mainConfigText(const MainConfig& config, const std::vector<std::int32_t>& streamIds,
                           const std::vector<bool>& autoRun, std::vector<std::string>& videoStreams);

// Reads `configDirectory`/vx_main_config.json into `config` under the lock
// vxConfigFileRWMC. `folders` is rebuilt from `folder` first. A file that
// won't open gets the derived folders in the four path fields and is written
// with no streams, then opened again. False when the file won't open, won't
// parse, or a key has the wrong type (then the fields read before it keep
// their new values). The messages go to standard error.
bool loadConfig(const std::string& folder, const std::string& configDirectory, MainConfig& config,
                MainConfigFolders& folders);

// Writes `config` with the stream lists built from `streamIds` and `autoRun`
// (both by value, as the stream table hands them over), keeping the previous
// file as vx_main_config.json.tmp. The record's two lists become what the
// file holds once the file is written; when the lock can't be had or the file
// won't open, the record stays as it was. True when the file was written.
bool saveConfig(const std::string& configDirectory, MainConfig& config,
                std::vector<std::int32_t> streamIds, std::vector<bool> autoRun);

} // namespace vx::config
