#pragma once
// The one-second tick. onTimer runs on the main thread and only marks the
// tick; the timer thread waits for the mark and does the periodic work, so a
// slow tick delays the thread and never the window.
#include <cstdint>
#include <functional>

#include "state/app_state.h"

namespace vx::core {

struct TimerHooks {
    std::function<void(int ms)> sleep;       // the thread's wait between looks at the mark
    std::function<void()> quotaTask;         // every 11 ticks
    std::function<void()> updateCamera;      // while not minimised
    std::function<void()> drawCamera;        // while not minimised
    std::function<void()> pollServices;      // on even ticks, while not minimised
    std::function<void()> watch;             // the watch over dead processes
};

// The timer thread's counters, visible to tests.
struct TimerClocks {
    std::int32_t pruneClock = 0;
    std::int32_t quotaClock = 0;
    std::int32_t tickNumber = 0;
};

// Runs until shuttingDown is seen. Returns the counters it ended with.
TimerClocks runTimerThread(AppState& state, const TimerHooks& hooks);

// The main thread's part of a tick. Returns true when the status panels are
// to be refreshed (the window isn't minimised).
bool onTimer(AppState& state);

} // namespace vx::core
