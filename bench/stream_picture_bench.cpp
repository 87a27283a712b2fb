// One picture from request to stored picture at 320 by 320: the request to a
// real vxVideoStream, its JPEG into the block, the notification, the decode
// and store in the manager. The rate of this loop is how many streams one
// manager can serve per second on this machine, one picture each.
#include <benchmark/benchmark.h>

#include <chrono>
#include <filesystem>
#include <future>
#include <thread>
#include <unistd.h>

#include "config/camera_config.h"
#include "config/text_codec.h"
#include "platform/process.h"
#include "platform/window_endpoint.h"
#include "supervision/stream_channel.h"

namespace {

namespace fs = std::filesystem;
using namespace vx;

void pictureRoundTrip(benchmark::State& state)
{
    const fs::path root = fs::temp_directory_path() / ("vx-stream-bench-" + std::to_string(::getpid()));
    fs::create_directories(root / "run");
    ::setenv("XDG_RUNTIME_DIR", (root / "run").c_str(), 1);
    const std::int32_t id = 900000 + ::getpid() % 10000;
    config::CameraConfig camera;
    camera.common.ID = id;
    camera.common.videoName = "bench" + std::to_string(id);
    camera.common.videoPath = std::string(VEXLANE_BIN_DIR) + "/demo_videos/gate_entry.avi";
    const std::string file = config::cameraFilePath(root.string(), id);
    config::saveCamera(file, camera, 1234, 1235);
    platform::ProcessStartInfo info;
    info.commandLine = "vxVideoStream \"" + file + "\" \"" + root.string() + "\" \"" + (root / "log.txt").string() + "\"";
    info.searchFolder = VEXLANE_BIN_DIR;
    info.workingDirectory = root;
    auto process = platform::startProcess(info);
    platform::WindowHandle window = 0;
    for (int i = 0; i < 200 && !window; ++i) {
        std::this_thread::sleep_for(std::chrono::milliseconds(25));
        window = platform::findWindow("", camera.common.videoName);
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(300));   // the first frames
    core::StreamTable table;
    std::int32_t given = id;
    table.addStream(camera.common, {}, {}, given, true);
    table.withDrawLock([&](std::vector<core::CameraRuntime>& r) { r[0].channel.window = window; });
    auto manager = platform::createWindowEndpoint("Vexlane", "bench manager");
    std::int64_t stored = 0;
    manager->onCopyData = [&](const platform::CopyDataMessage& m) {
        const bool ok = supervision::onCopyData(table, m, [&] { return ++stored; });
        return ok;
    };
    if (!window || !manager) {
        state.SkipWithError("vxVideoStream didn't show its window");
    } else {
        const core::StreamChannel channel = table.record(0).channel;
        for (auto _ : state) {
            const std::int64_t before = stored;
            auto request = std::async(std::launch::async,
                                      [&] { supervision::requestImage(channel, manager->handle(), 320, 320); });
            while (stored == before && manager->dispatchOne(1000)) {
            }
            request.wait();
        }
        state.counters["pictures/s"] = benchmark::Counter(static_cast<double>(state.iterations()),
                                                          benchmark::Counter::kIsRate);
    }
    if (window)
        supervision::sendText(window, "quit", 1000);
    if (process && !process->waitForExit(3000))
        platform::terminateProcess(process->pid());
    std::error_code ec;
    fs::remove_all(root, ec);
}
BENCHMARK(pictureRoundTrip)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace

BENCHMARK_MAIN();
