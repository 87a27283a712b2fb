// The real vxVideoStream on a generated video: started by the watch, found
// by its window, answering "getimage" through its block, leaving on "quit"
// or ended by force, and started again only when missing.
#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <thread>
#include <unistd.h>

#include "config/camera_config.h"
#include "config/text_codec.h"
#include "platform/command_line.h"
#include "platform/process_command_line.h"
#include "platform/window_endpoint.h"
#include "support/installation.h"
#include "support/temp_dir.h"
#include "supervision/stream_channel.h"
#include "supervision/stream_control.h"

namespace vx::supervision {
namespace {

namespace fs = std::filesystem;

struct StreamWorld {
    test::RuntimeSandbox sandbox;
    test::TempDir root;
    core::StreamTable table;
    StreamControl control;
    std::vector<std::string> entries;
    std::vector<bool> autoRun;
    std::int32_t baseId = 800000 + static_cast<std::int32_t>(::getpid() % 10000) * 10;

    StreamWorld()
    {
        fs::create_directories(root.path() / "configs");
        fs::create_directories(root.path() / "logs");
        control.table = &table;
        control.startWatchMs = 300;
        control.settings = [this] {
            StreamSettings s;
            s.mainConfig.videoStreams = entries;
            s.mainConfig.autoRunStreams = autoRun;
            s.mainConfig.videoPath = (root.path() / "videos").string();
            s.mainConfig.systemLogPath = (root.path() / "logs").string();
            s.configDirectory = (root.path() / "configs").string();
            s.baseDirectory = VEXLANE_BIN_DIR;
            return s;
        };
    }
    ~StreamWorld()
    {
        // Every process of every stream, also a second copy of one.
        for (const std::string& entry : entries) {
            for (long pid : findProcessesByArg(control, streamImageName(), firstArg(entry)))
                platform::terminateProcess(pid);
            test::waitFor([&] { return findProcessesByArg(control, streamImageName(), firstArg(entry)).empty(); }, 5000);
        }
    }
    std::string firstArg(const std::string& entry) const { return (root.path() / "configs").string() + "/" + entry; }
    std::string name(int k) const { return "Поток " + std::to_string(baseId + k); }
    // A stream file and its table record; returns its position.
    int addStream(int k, bool autorun)
    {
        config::CameraConfig camera;
        camera.common.ID = baseId + k;
        camera.common.videoName = config::utf8ToCp1251(name(k));
        camera.common.videoPath = std::string(VEXLANE_BIN_DIR) + "/demo_videos/gate_entry.avi";
        const std::string entry = config::cameraFileName(baseId + k);
        config::saveCamera(config::cameraFilePath((root.path() / "configs").string(), baseId + k), camera, 1234, 1235);
        std::int32_t id = baseId + k;
        table.addStream(camera.common, camera.recognition, camera.control, id, true);
        entries.push_back(entry);
        autoRun.push_back(autorun);
        return static_cast<int>(entries.size()) - 1;
    }
};

// One walk: the watch starts the autorun stream, a picture arrives within
// two ticks, two restarts that follow each other leave one process, and the
// stop of all ends it.
TEST(StreamProcess, WatchPictureRestartsAndStopAll)
{
    StreamWorld world;
    const int position = world.addStream(5, true);
    world.addStream(6, false);
    // The stream's processes, found by command line as the watch finds them.
    auto count = [&] {
        std::size_t n = 0;
        const std::string wanted = normalizeArg(world.firstArg(world.entries[position]));
        for (const auto& p : platform::listProcesses()) {
            const auto args = platform::splitCommandLine(platform::readProcessCommandLine(p.pid));
            if (p.imageName == streamImageName() && args.size() >= 2 && sameTextIgnoringCase(normalizeArg(args[1]), wanted))
                ++n;
        }
        return n;
    };
    // The watch runs on its own thread as the timer's does.
    std::atomic<bool> watching{true};
    std::thread watch([&] {
        while (watching) {
            restartMissingStreams(world.control);
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
        }
    });
    // Also when an assertion leaves early.
    struct Join {
        std::atomic<bool>& on;
        std::thread& thread;
        ~Join()
        {
            on = false;
            if (thread.joinable())
                thread.join();
        }
    } join{watching, watch};
    ASSERT_TRUE(test::waitFor([&] { return count() == 1; }, 15000));
    ASSERT_TRUE(test::waitFor([&] { return platform::findWindow("", world.name(5)) != 0; }, 10000));

    auto manager = platform::createWindowEndpoint("Vexlane", "manager");
    ASSERT_TRUE(manager);
    manager->onCopyData = [&](const platform::CopyDataMessage& m) {
        return onCopyData(world.table, m, [] { return std::int64_t{42}; });
    };
    core::UpdateCameraHooks hooks;
    hooks.now = [] { return std::int64_t{40}; };
    hooks.findWindow = [](const std::string& title) { return platform::findWindow("", config::cp1251ToUtf8(title)); };
    std::vector<std::future<void>> requests;
    hooks.requestImage = [&](const core::StreamChannel& channel, int w, int h) {
        const platform::WindowHandle host = manager->handle();
        requests.push_back(std::async(std::launch::async, [channel, host, w, h] { requestImage(channel, host, w, h); }));
    };
    bool arrived = false;
    for (int tick = 0; tick < 2 && !arrived; ++tick) {
        world.table.updateCamera(hooks, 320, 320);
        // What the tile drawing does: the table takes the window it found.
        world.table.withDrawLock([](std::vector<core::CameraRuntime>& r) {
            if (r[0].channel.window == 0)
                r[0].channel.window = platform::findWindow("", config::cp1251ToUtf8(r[0].config.videoName));
        });
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(1);
        while (!arrived && std::chrono::steady_clock::now() < end) {
            manager->dispatchOne(50);
            arrived = world.table.record(0).hasImage;
        }
    }
    for (auto& r : requests)
        r.wait();
    EXPECT_TRUE(arrived);
    EXPECT_EQ(std::pair(world.table.record(0).image.width, world.table.record(0).image.height), std::pair(320, 320));
    EXPECT_EQ(world.table.record(0).lastImageTime, 42);

    // Two restarts of the stream follow each other as two quick OKs would.
    const platform::WindowHandle window = world.table.record(0).channel.window;
    auto first = std::async(std::launch::async, [&] { videoRestart(world.control, position); });
    auto second = std::async(std::launch::async, [&] { videoRestart(world.control, position); });
    first.wait();
    second.wait();
    EXPECT_EQ(count(), 1u);
    EXPECT_EQ(platform::windowOwnerPid(window), 0);
    // Stop all: the watch goes off, every stream gets its stop.
    watching = false;
    watch.join();
    std::vector<std::future<void>> stops;
    for (int i = 0; i < world.table.size(); ++i)
        stops.push_back(std::async(std::launch::async, [&, i] { videoStop(world.control, i); }));
    for (auto& s : stops)
        s.wait();
    EXPECT_TRUE(test::waitFor([&] { return count() == 0; }, 10000));
}

} // namespace
} // namespace vx::supervision
