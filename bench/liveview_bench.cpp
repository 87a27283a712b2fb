// One drawing of the whole tile area, as the timer thread makes it every
// second: 16 and 100 streams with live pictures on a 1920 by 1040 zone.
// The target for 100 streams is below 15 ms (median of the repetitions):
//     liveview_bench --benchmark_repetitions=20 --benchmark_report_aggregates_only=true
#include <benchmark/benchmark.h>

#include <QGuiApplication>
#include <cstdlib>

#include <random>

#include "config/text_codec.h"
#include "imaging/picture.h"
#include "liveview/interface_images.h"
#include "liveview/tile_pictures.h"

namespace {

using namespace vx;

// A stream picture as the streams send them: 320 wide, of their aspect.
vx::imaging::Picture streamPicture(int seed)
{
    vx::imaging::Picture picture = vx::imaging::makePicture(320, 240, 3);
    std::mt19937 noise(static_cast<unsigned>(seed));
    const int radius = 40 + seed % 40;
    for (int y = 0; y < picture.height; ++y)
        for (int x = 0; x < picture.width; ++x) {
            const bool inside = (x - 160) * (x - 160) + (y - 120) * (y - 120) <= radius * radius;
            for (int c = 0; c < 3; ++c)
                picture.at(x, y)[c] = inside ? 255 : static_cast<std::uint8_t>(noise() & 0xFF);
        }
    return picture;
}

void fill(core::StreamTable& table, int streams)
{
    for (int i = 0; i < streams; ++i) {
        config::CameraCommon common;
        common.videoName = config::utf8ToCp1251("Камера " + std::to_string(i + 1));
        std::int32_t id = i + 1;
        table.addStream(common, config::CameraRecognition{}, config::CameraControl{}, id, true);
    }
    table.withDrawLock([](std::vector<core::CameraRuntime>& records) {
        for (std::size_t i = 0; i < records.size(); ++i) {
            records[i].image = streamPicture(static_cast<int>(i));
            records[i].hasImage = i % 5 != 0;   // every fifth one shows "no connection" too
            records[i].channel.window = 1000 + static_cast<vx::platform::WindowHandle>(i);
            records[i].running = true;
            records[i].control.buttonOpen = i % 4 == 1;
            records[i].control.buttonClose = i % 4 == 1;
        }
    });
}

void drawCameraBench(benchmark::State& state)
{
    const int streams = static_cast<int>(state.range(0));
    core::StreamTable table;
    fill(table, streams);
    liveview::LiveView view;
    bool all = false;
    view.buttonImages = liveview::loadButtonImages(std::string(VEXLANE_SOURCE_DIR) + "/images", all);
    if (!all)
        state.SkipWithError("interface pictures missing");
    view.hover.hoverTile = 1;
    view.hover.hoverButton = 100;
    const liveview::DrawHooks hooks;
    for (auto _ : state) {
        liveview::ZonePicture zone = liveview::drawCamera(table, view, 1920, 1040, hooks);
        benchmark::DoNotOptimize(zone.pixels.data);
    }
    state.counters["tile"] = view.grid.tileSize;
}

BENCHMARK(drawCameraBench)->Arg(16)->Arg(100)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv)
{
    setenv("QT_QPA_PLATFORM", "offscreen", 0);
    QGuiApplication app(argc, argv);   // text drawing needs the GUI application
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
