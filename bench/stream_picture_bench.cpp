// One picture from request to the picture ready for its tile, at 320 by
// 320: the request to a real vxVideoStream, its JPEG into the block, the
// notification, the decode and store in the manager, for a 120-pixel tile
// (100 streams on 1920 by 1040) and a 320-pixel one (the whole picture).
// Then the manager's part alone on the stream's own bytes (onCopyData: block,
// decode, tile picture, store), beside the reference: a bare whole decode of
// the same bytes (cv::imdecode). Targets: request to tile-ready picture at
// most 0.6 ms for the 120-pixel tile; the manager's part at most 1.1 times
// the bare decode for the whole-picture tile.
//     stream_picture_bench --benchmark_repetitions=10 --benchmark_report_aggregates_only=true
#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <future>
#include <thread>
#include <unistd.h>
#include <vector>

#include "config/camera_config.h"
#include "config/text_codec.h"
#include "imaging/picture_ops.h"
#include "platform/process.h"
#include "platform/shared_block.h"
#include "platform/window_endpoint.h"
#include "ratio_report.h"
#include "supervision/stream_channel.h"

namespace {

namespace fs = std::filesystem;
using namespace vx;

// The stream's last answer, for the manager's part alone.
std::vector<std::uint8_t> streamJpeg;

void pictureRoundTrip(benchmark::State& state)
{
    const int side = static_cast<int>(state.range(0));
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
    table.setTileSide(side);
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
        const core::CameraRuntime record = table.record(0);
        state.counters["tile"] = record.tilePicture.width;
        state.counters["decoded"] = record.image.width;
        // The stream's bytes as they stand in its block.
        if (auto block = platform::openSharedBlock("VxVideoStreamSharedMemoryID" + std::to_string(id), 500000)) {
            const char* data = block->data();
            const void* zero = std::memchr(data, '\0', 255);
            const std::size_t length =
                zero ? std::strtoull(std::strrchr(data, ':') + 1, nullptr, 10) : 0;
            const auto* start = reinterpret_cast<const std::uint8_t*>(zero) + 1;
            if (zero && length < 500000 - 256)
                streamJpeg.assign(start, start + length);
        }
    }
    if (window)
        supervision::sendText(window, "quit", 1000);
    if (process && !process->waitForExit(3000))
        platform::terminateProcess(process->pid());
    std::error_code ec;
    fs::remove_all(root, ec);
}
BENCHMARK(pictureRoundTrip)->Arg(120)->Arg(320)->Unit(benchmark::kMillisecond)->UseRealTime();

// The manager's part: a block of its own holding the stream's answer.
void managerPart(benchmark::State& state)
{
    const int side = static_cast<int>(state.range(0));
    if (streamJpeg.empty()) {
        state.SkipWithError("no picture from the stream");
        return;
    }
    const std::int32_t id = 910000 + ::getpid() % 10000;
    auto block = platform::createSharedBlock("VxVideoStreamSharedMemoryID" + std::to_string(id), 500000);
    const platform::WindowHandle window = 0x1234;
    char header[64];
    const int n = std::snprintf(header, sizeof header, "getimage:1234:%zu", streamJpeg.size());
    std::memcpy(block->writableData(), header, static_cast<std::size_t>(n) + 1);
    std::memcpy(block->writableData() + n + 1, streamJpeg.data(), streamJpeg.size());
    core::StreamTable table;
    table.setTileSide(side);
    config::CameraCommon common;
    std::int32_t given = id;
    table.addStream(common, {}, {}, given, true);
    table.withDrawLock([&](std::vector<core::CameraRuntime>& r) { r[0].channel.window = window; });
    platform::CopyDataMessage message;
    message.cbData = static_cast<std::uint32_t>(id);
    for (auto _ : state)
        supervision::onCopyData(table, message, [] { return std::int64_t{1}; });
    if (table.record(0).tilePicture.width != side)
        state.SkipWithError("no tile picture stored");
}
BENCHMARK(managerPart)->Arg(120)->Arg(320)->Unit(benchmark::kMillisecond)->UseRealTime();

// The reference: the same bytes, decoded whole, nothing else.
void bareDecode(benchmark::State& state)
{
    if (streamJpeg.empty()) {
        state.SkipWithError("no picture from the stream");
        return;
    }
    for (auto _ : state) {
        imaging::Picture picture = imaging::decodePicture(streamJpeg);
        benchmark::DoNotOptimize(picture.data);
    }
}
BENCHMARK(bareDecode)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    vx::bench::RatioReporter report;
    benchmark::RunSpecifiedBenchmarks(&report);
    report.printRatio("request to tile-ready picture, 120-pixel tile", "pictureRoundTrip/120", "bareDecode",
                      "<= 0.6 ms");
    report.printRatio("request to tile-ready picture, 320-pixel tile", "pictureRoundTrip/320", "bareDecode", "-");
    report.printRatio("manager's part, 120-pixel tile", "managerPart/120", "bareDecode", "-");
    report.printRatio("manager's part, whole-picture tile", "managerPart/320", "bareDecode", "ratio <= 1.1");
    benchmark::Shutdown();
    return 0;
}
