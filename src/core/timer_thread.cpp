#include "core/timer_thread.h"

#include <chrono>
#include <string>
#include <thread>

#include "maintenance/system_log.h"

namespace vx::core {

namespace {
void call(const std::function<void()>& hook)
{
    if (hook)
        hook();
}
} // namespace

TimerClocks runTimerThread(AppState& state, const TimerHooks& hooks)
{
    auto sleep = hooks.sleep ? hooks.sleep
                             : [](int ms) { std::this_thread::sleep_for(std::chrono::milliseconds(ms)); };
    TimerClocks clocks;
    VX_LOG(maintenance::logTrace, "Timer started!");
    for (;;) {
        // Ticks that come while a pass runs merge into one.
        while (!state.tickPending.load())
            sleep(10);
        clocks.pruneClock += 1000;
        clocks.quotaClock += 1000;
        state.tickPending = false;
        if (state.shuttingDown)
            break;
        if (clocks.pruneClock > 5000)
            state.pendingTasks.prune();
        if (clocks.quotaClock > 10000) {
            clocks.quotaClock = 0;
            call(hooks.quotaTask);
        }
        if (!state.minimised) {
            VX_LOG(maintenance::logDebug, "updateCamera procedure!");
            call(hooks.updateCamera);
            VX_LOG(maintenance::logDebug, "drawCamera procedure. Cameras:" + std::to_string(state.streams.size()));
            call(hooks.drawCamera);
            if (state.shuttingDown)
                break;
            if (clocks.tickNumber % 2 == 0) {
                // The poll logs its own "inference request!" and the rest.
                call(hooks.pollServices);
                if (state.shuttingDown)
                    break;
            }
            VX_LOG(maintenance::logDebug, "updateCamera procedure end!");
        }
        if (state.restartControl >= 10 && state.liveMainConfig.startStatus)
            call(hooks.watch);
        ++clocks.tickNumber;
    }
    VX_LOG(maintenance::logTrace, "Timer finished!");
    return clocks;
}

bool onTimer(AppState& state)
{
    VX_LOG(maintenance::logTrace, "onTimer");
    state.tickPending = true;
    if (state.minimised)
        return false;
    state.status.tick(21);
    return true;
}

} // namespace vx::core
