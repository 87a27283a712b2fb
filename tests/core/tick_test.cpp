// The tick as the log and perf.txt see it, and the quota task on the manager's state.
#include <gtest/gtest.h>

#include <thread>

#include "config/text_codec.h"
#include "core/status_panels.h"
#include "core/timer_thread.h"
#include "core/video_quota.h"
#include "maintenance/system_log.h"
#include "supervision/service_test_support.h"
#include "support/captured_stderr.h"
#include "support/temp_dir.h"

using namespace vx;
using namespace vx::core;
namespace fs = std::filesystem;

TEST(Tick, LogLinesOfOnTimerAndTheTimerThreadInOrder)
{
    test::LogCapture log{0};
    AppState state;
    int served = 0;
    TimerHooks hooks;
    hooks.sleep = [&](int) {
        if (served++ == 2)
            state.shuttingDown = true;
        onTimer(state);
    };
    runTimerThread(state, hooks);
    EXPECT_EQ(log.lines(), (std::vector<std::string>{
                               "[TRACE]Timer started!",
                               "[TRACE]onTimer",
                               "[DEBUG]updateCamera procedure!",
                               "[DEBUG]drawCamera procedure. Cameras:0",
                               "[DEBUG]updateCamera procedure end!",
                               "[TRACE]onTimer",
                               "[DEBUG]updateCamera procedure!",
                               "[DEBUG]drawCamera procedure. Cameras:0",
                               "[DEBUG]updateCamera procedure end!",
                               "[TRACE]onTimer",
                               "[TRACE]Timer finished!",
                           }));
}

TEST(Tick, PerfSampleOnlyOfAKnownRateWithPerfLogOne)
{
    test::TempDir dir;
    maintenance::setPerfLog(
        std::make_unique<maintenance::LogBuffer>(dir.path() / "perf.txt", maintenance::LogMode::appendQuiet));
    AppState state;
    state.liveMainConfig.perfLog = 1;
    statusPanelTexts(state);   // no answer yet
    state.fpsRecognition = 25;
    state.statusControl = 1;
    state.statusMes = 1;
    state.restartControl = 10;
    statusPanelTexts(state);
    state.fpsRecognition = -1;   // the service is down
    statusPanelTexts(state);
    state.fpsRecognition = 24;
    state.liveMainConfig.perfLog = 2;   // only 1 samples
    statusPanelTexts(state);
    maintenance::setPerfLog(nullptr);   // flushed and closed
    EXPECT_EQ(test::logTexts(dir.path() / "perf.txt"), (std::vector<std::string>{"25"}));
}

TEST(Tick, QuotaTaskWorksOnTheArchiveOfTheMainConfig)
{
    test::TempDir dir;
    const fs::path day = dir.path() / "videos" / "stream1" / "2024_01_01";
    fs::create_directories(day);
    test::writeFileBytes(day / "video_stream_1_2024_01_01_10_00_00.webm", "webm");
    AppState state;
    runVideoQuota(state);   // no archive yet: nothing happens
    state.liveMainConfig.videoPath = config::utf8ToCp1251((dir.path() / "videos").string());
    state.liveMainConfig.maxSizeVideoDirectoryMb = 0;
    createVideoQuota(state);
    ASSERT_TRUE(state.videoQuota);
    EXPECT_EQ(state.videoQuota->totalBytes(), 4u);

    TimerHooks hooks;
    connectQuotaHook(hooks, state);
    hooks.quotaTask();   // spawned: wait for it through the lock and the file
    for (int i = 0; i < 500 && fs::exists(day); ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    std::lock_guard<std::mutex> lock(state.videoQuotaMutex);
    EXPECT_EQ(state.videoQuota->totalBytes(), 0u);
    EXPECT_FALSE(fs::exists(day));
    EXPECT_TRUE(fs::exists(dir.path() / "videos" / "stream1"));
}
