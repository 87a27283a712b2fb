#pragma once
// The two status panels of the main dialog: the services and the streams.
// Texts are Windows-1251, lines separated by CR LF.
#include <string>

namespace vx::core {

struct ServiceStatus {
    int fpsRecognition = -1;   // -1: no answer
    int restartControl = 0;    // 10: the watch is on
    int statusControl = -1;
    int statusMes = -1;
};

struct StreamCounts {
    int total = 0;
    int running = 0;
    int planned = 0;
};

std::string serviceStatusText(const ServiceStatus& status);
std::string streamStatusText(const StreamCounts& counts);

} // namespace vx::core
