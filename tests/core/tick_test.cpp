// The tick as the log and perf.txt see it, and the quota task on the manager's state.
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <thread>

#include "config/text_codec.h"
#include "core/status_panels.h"
#include "core/timer_thread.h"
#include "core/video_quota.h"
#include "maintenance/system_log.h"
#include "support/captured_stderr.h"
#include "support/temp_dir.h"

using namespace vx;
using namespace vx::core;
namespace fs = std::filesystem;

namespace {

// The system log and perf.txt of one test, in a temporary folder.
struct Logs {
    test::TempDir dir;
    explicit Logs(int level = 0)
    {
        maintenance::setSystemLog(
            std::make_unique<maintenance::LogBuffer>(dir.path() / "log.txt", maintenance::LogMode::appendQuiet));
        maintenance::systemLog()->setMinLevel(level);
        maintenance::setPerfLog(
            std::make_unique<maintenance::LogBuffer>(dir.path() / "perf.txt", maintenance::LogMode::appendQuiet));
    }
    ~Logs()
    {
        maintenance::setSystemLog(nullptr);
        maintenance::setPerfLog(nullptr);
    }
    // The texts of a file's lines, without time stamps.
    std::vector<std::string> lines(const char* name)
    {
        if (std::string(name) == "log.txt")
            maintenance::setSystemLog(nullptr);   // flushed and closed
        else
            maintenance::setPerfLog(nullptr);
        return test::logTexts(dir.path() / name);
    }
};

} // namespace

TEST(Tick, LogLinesOfOnTimerAndTheTimerThreadInOrder)
{
    Logs logs;
    AppState state;
    int served = 0;
    TimerHooks hooks;
    hooks.sleep = [&](int) {
        if (served++ == 2)
            state.shuttingDown = true;
        onTimer(state);
    };
    runTimerThread(state, hooks);
    EXPECT_EQ(logs.lines("log.txt"), (std::vector<std::string>{
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
    Logs logs(3);
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
    EXPECT_EQ(logs.lines("perf.txt"), (std::vector<std::string>{"25"}));
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
