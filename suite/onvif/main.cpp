// get_rtsp_onvif -scan
// get_rtsp_onvif -rtsp IP LOGIN PASSWORD
//
// Prints one JSON text on standard output: {"cameras":[{"ip":..,"name":..}]}
// for the scan, {"rtsp":".."} or {} for the link. A run never lasts longer
// than its time limit (17 s, below the manager's 20-second wait): a
// watchdog prints what a failed run prints and ends the process.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <thread>
#include <vector>

#include "discovery_socket.h"
#include "platform/program_arguments.h"
#include "process_setup.h"
#include "stream_link.h"
#include "tool_output.h"

namespace {

constexpr int scanListenMs = 3000;
constexpr int defaultTimeLimitMs = 17000;

// VX_ONVIF_TIME_LIMIT_MS shortens the limit for tests; never above the default.
int timeLimitMs()
{
    if (const char* value = std::getenv("VX_ONVIF_TIME_LIMIT_MS")) {
        const int ms = std::atoi(value);
        if (ms > 0 && ms < defaultTimeLimitMs)
            return ms;
    }
    return defaultTimeLimitMs;
}

void startWatchdog(int limitMs, std::string fallback)
{
    std::thread([limitMs, fallback] {
        std::this_thread::sleep_for(std::chrono::milliseconds(limitMs));
        onvif::printOnce(fallback);
        std::_Exit(0);
    }).detach();
}

int usage()
{
    std::fputs("usage: get_rtsp_onvif -scan | -rtsp IP LOGIN PASSWORD\n", stderr);
    return 2;
}

} // namespace

int main(int argc, char** argv)
{
    onvif::prepareProcess();
    // UTF-8 on both platforms: Windows hands main a Cyrillic password in the
    // ANSI code page.
    const std::vector<std::string> args = vx::platform::programArguments(argc, argv);
    const std::size_t count = args.size();
    const int limitMs = timeLimitMs();
    const auto deadline = onvif::Clock::now() + std::chrono::milliseconds(limitMs - 500);
    if (count == 2 && args[1] == "-scan") {
        startWatchdog(limitMs, onvif::scanJson({}));
        const auto cameras = onvif::scanCameras(onvif::probeTargetsFromEnvironment(),
                                                std::min(scanListenMs, limitMs - 500));
        onvif::printOnce(onvif::scanJson(cameras));
        return 0;
    }
    if (count >= 3 && args[1] == "-rtsp") {
        startWatchdog(limitMs, onvif::rtspJson(std::nullopt));
        // The manager doesn't quote the arguments: an empty password leaves
        // no argument, and one with blanks in it arrives in pieces, which
        // are joined again with one blank each.
        std::string password;
        for (std::size_t i = 4; i < count; ++i)
            password += (i > 4 ? " " : "") + args[i];
        const onvif::LinkRequest request{args[2], count > 3 ? args[3] : "", password, deadline};
        onvif::printOnce(onvif::rtspJson(onvif::getStreamLink(request)));
        return 0;
    }
    return usage();
}
