#pragma once
// Running the real get_rtsp_onvif of build/bin/ through the manager's tool
// runner, with the test-only settings that keep every probe on loopback.
#include <chrono>
#include <string>

#include "supervision/tool_runner.h"
#include "support/temp_dir.h"

namespace vx::test {

struct TimedRun {
    supervision::ToolRun run;
    long long ms = 0;
};

inline TimedRun runOnvifTool(const std::string& arguments)
{
    const auto start = std::chrono::steady_clock::now();
    TimedRun timed;
    // Never past the manager's own wait: a tool that overruns fails the test.
    timed.run = supervision::runTool("get_rtsp_onvif " + arguments, VEXLANE_BIN_DIR, 19000);
    timed.ms = std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - start).count();
    return timed;
}

// Probes go to these loopback addresses only; a scan without targets would
// reach the network, so every test sets them.
class LoopbackDiscovery {
public:
    LoopbackDiscovery(const std::string& targets, const std::string& discoveryPort)
        : targets_("VX_ONVIF_PROBE_TARGETS", targets), port_("VX_ONVIF_DISCOVERY_PORT", discoveryPort)
    {
    }

private:
    ScopedEnv targets_;
    ScopedEnv port_;
};

} // namespace vx::test
