#include "process_signals.h"

#include <csignal>

namespace vx::stream {

namespace {

std::atomic<bool>* endRequested = nullptr;

void onEndSignal(int)
{
    if (endRequested)
        *endRequested = true;
}

} // namespace

void watchEndRequests(std::atomic<bool>& requested)
{
    endRequested = &requested;
    std::signal(SIGTERM, onEndSignal);
    std::signal(SIGINT, onEndSignal);
    watchPlatformSignals(onEndSignal);
}

} // namespace vx::stream
