#pragma once
// The manager's own settings, kept in vx_main_config.json.
#include <cstdint>
#include <string>
#include <vector>

namespace vx::config {

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

} // namespace vx::config
