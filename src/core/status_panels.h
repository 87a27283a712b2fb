#pragma once
// The two status panels of the main dialog: the services and the streams.
// Texts are Windows-1251, lines separated by CR LF.
#include <string>

#include "state/app_state.h"

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

struct StatusPanelTexts {
    std::string services;   // control 1040
    std::string streams;    // control 1043
};

// updateStatusPanels without the window: both texts from the published
// service values and the stream table (two counting passes). When perf.txt
// is open and the config's perfLog is 1, the recognition's fps goes into it
// as a line while it is known; -1 (no answer) writes nothing.
StatusPanelTexts statusPanelTexts(AppState& state);

} // namespace vx::core
