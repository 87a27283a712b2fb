#include <gtest/gtest.h>

#include <mutex>
#include <thread>

#include "config/text_codec.h"
#include "core/status_panels.h"
#include "core/timer_thread.h"

using namespace vx;
using namespace vx::core;

namespace {

// Drives the timer thread tick by tick: every wait of the thread delivers
// the next tick, until `ticks` ticks were served; then the manager shuts down.
struct TickDriver {
    TickDriver(AppState& s, int n) : state(s), ticks(n) {}
    AppState& state;
    int ticks;
    int delivered = 0;
    std::function<void(int tick)> beforeTick;
    void sleep(int)
    {
        if (delivered == ticks)
            state.shuttingDown = true;
        else if (beforeTick)
            beforeTick(delivered);
        ++delivered;
        state.tickPending = true;
    }
};

} // namespace

// What each tick runs: polls every second tick, quota every eleventh, the
// watch only with both flags on; minimised, no drawing and no polls, but the
// watch and the count go on. -1: not looked at.
TEST(TimerThread, ServesTicksAndLeavesOnShutdown)
{
    struct Case {
        bool minimised;
        int restartControl;
        bool startStatus;
        int ticks, updates, draws, polls, quota, watch;
    };
    for (const Case& c : {Case{false, 0, false, 6, 6, 6, 3, 0, 0},     // polls at ticks 0, 2, 4
                          Case{false, 10, true, 23, 23, 23, 12, 2, 23}, // quota at ticks 11 and 22
                          Case{false, 10, false, 3, 3, 3, 2, 0, 0},
                          Case{true, 10, true, 4, -1, 0, 0, 0, 4}}) {
        SCOPED_TRACE(c.ticks);
        AppState state;
        state.minimised = c.minimised;
        state.restartControl = c.restartControl;
        state.liveMainConfig.startStatus = c.startStatus;
        TickDriver driver{state, c.ticks};
        int updates = 0, draws = 0, polls = 0, quota = 0, watch = 0;
        TimerHooks hooks;
        hooks.sleep = [&](int ms) { driver.sleep(ms); };
        hooks.updateCamera = [&] { ++updates; };
        hooks.drawCamera = [&] { ++draws; };
        hooks.pollServices = [&] { ++polls; };
        hooks.quotaTask = [&] { ++quota; };
        hooks.watch = [&] { ++watch; };
        const TimerClocks clocks = runTimerThread(state, hooks);
        EXPECT_EQ(clocks.tickNumber, c.ticks);
        const std::pair<int, int> counts[] = {{updates, c.updates}, {draws, c.draws}, {polls, c.polls},
                                              {quota, c.quota},     {watch, c.watch}};
        for (const auto& [got, wanted] : counts)
            EXPECT_TRUE(wanted < 0 || got == wanted) << got << " instead of " << wanted;
    }
}

TEST(TimerThread, FinishedTasksArePrunedFromTheSixthTickOn)
{
    AppState state;
    std::promise<void> done;
    done.set_value();
    state.pendingTasks.add(done.get_future());
    std::promise<void> running;
    state.pendingTasks.add(running.get_future());
    std::vector<int> sizes;
    TickDriver driver{state, 7};
    driver.beforeTick = [&](int) { sizes.push_back(state.pendingTasks.size()); };
    TimerHooks hooks;
    hooks.sleep = [&](int ms) { driver.sleep(ms); };
    runTimerThread(state, hooks);
    // Before tick n (n = 0..6) the size is looked at; the prune runs on the
    // sixth tick (index 5) first.
    ASSERT_EQ(sizes.size(), 7u);
    EXPECT_EQ(sizes[5], 2);
    EXPECT_EQ(sizes[6], 1);
    running.set_value();
}

// The text set from any thread is shown, stays twenty ticks and goes on
// the twenty-first.
TEST(OnTimer, StatusTextStaysTwentyOneTicks)
{
    AppState state;
    std::mutex mutex;
    std::vector<std::string> shown;
    state.status.setShown([&](const std::string& text) {
        std::lock_guard<std::mutex> lock(mutex);
        shown.push_back(text);
    });
    std::thread([&] { state.status.set("hello"); }).join();
    for (int i = 0; i < 20; ++i) {
        EXPECT_TRUE(onTimer(state));
        EXPECT_EQ(state.status.get(), "hello") << "tick " << i;
    }
    onTimer(state);
    EXPECT_EQ(state.status.get(), "");
    EXPECT_EQ(shown, (std::vector<std::string>{"hello", ""}));
    EXPECT_TRUE(state.tickPending);

    // A new text restarts the count; while minimised nothing counts.
    state.status.set("again");
    state.minimised = true;
    for (int i = 0; i < 30; ++i)
        EXPECT_FALSE(onTimer(state));
    EXPECT_EQ(state.status.get(), "again");
}

TEST(StatusPanels, TextsAsTheOperatorSeesThem)
{
    ServiceStatus s;
    EXPECT_EQ(config::cp1251ToUtf8(serviceStatusText(s)),
              "Анализ:Стоп\r\nКонтроль:Стоп\r\nУправление:Стоп\r\nМессендж:Стоп");
    s.fpsRecognition = 25;
    s.restartControl = 10;
    s.statusControl = 0;
    s.statusMes = 1;
    EXPECT_EQ(config::cp1251ToUtf8(serviceStatusText(s)),
              "Анализ:25 кадров/сек\r\nКонтроль:ОК\r\nУправление:ОК\r\nМессендж:ОК");
    EXPECT_EQ(config::cp1251ToUtf8(streamStatusText({3, 1, 2})),
              "Всего:3\r\nЗапущенных:1\r\nПланированно:2");
}
