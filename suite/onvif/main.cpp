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
#include <cstring>
#include <thread>

#include "discovery_socket.h"
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
    const int limitMs = timeLimitMs();
    const auto deadline = onvif::Clock::now() + std::chrono::milliseconds(limitMs - 500);
    if (argc == 2 && std::strcmp(argv[1], "-scan") == 0) {
        startWatchdog(limitMs, onvif::scanJson({}));
        const auto cameras = onvif::scanCameras(onvif::probeTargetsFromEnvironment(),
                                                std::min(scanListenMs, limitMs - 500));
        onvif::printOnce(onvif::scanJson(cameras));
        return 0;
    }
    if (argc >= 3 && std::strcmp(argv[1], "-rtsp") == 0) {
        startWatchdog(limitMs, onvif::rtspJson(std::nullopt));
        // The manager doesn't quote the arguments: an empty password leaves
        // no argument, and one with blanks in it arrives in pieces, which
        // are joined again with one blank each.
        std::string password;
        for (int i = 4; i < argc; ++i)
            password += (i > 4 ? " " : "") + std::string(argv[i]);
        const onvif::LinkRequest request{argv[2], argc > 3 ? argv[3] : "", password, deadline};
        onvif::printOnce(onvif::rtspJson(onvif::getStreamLink(request)));
        return 0;
    }
    return usage();
}
