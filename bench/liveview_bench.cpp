// One drawing of the whole tile area, as the timer thread makes it every
// second: 16 and 100 streams with live pictures on a 1920 by 1040 zone.
//   Unchanged:   no new picture and no hover change since the last drawing
//                (tiles are copied from the last drawing).
//   NewPictures: every stream brought a new picture since the last drawing,
//                stored ready for its tile as the picture channel stores it.
//   FromScratch: the reference; every tile drawn from the picture itself,
//                nothing lent by the last drawing.
// Target for 100 streams: 3 ms (median of the repetitions). Printed at the
// end beside the reference of the same run:
//     liveview_bench --benchmark_repetitions=20 --benchmark_report_aggregates_only=true
#include <benchmark/benchmark.h>

#include <QGuiApplication>
#include <cstdlib>

#include <random>

#include "config/text_codec.h"
#include "imaging/picture.h"
#include "imaging/picture_ops.h"
#include "liveview/interface_images.h"
#include "liveview/tile_pictures.h"
#include "ratio_report.h"

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

// Two sets of pictures, so that each drawing of NewPictures finds other
// pictures than the one before.
struct PictureSets {
    std::vector<imaging::Picture> image[2], tile[2];
};

void setPictures(core::StreamTable& table, const PictureSets& sets, int which, bool ready)
{
    table.withDrawLock([&](std::vector<core::CameraRuntime>& records) {
        for (std::size_t i = 0; i < records.size(); ++i) {
            records[i].image = sets.image[which][i];
            records[i].tilePicture = ready ? sets.tile[which][i] : imaging::Picture();
            records[i].tilePictureSource = records[i].image;
        }
    });
}

enum class Case { unchanged, newPictures, fromScratch };

void drawCameraCase(benchmark::State& state, Case which)
{
    const int streams = static_cast<int>(state.range(0));
    core::StreamTable table;
    fill(table, streams);
    bool all = false;
    const std::vector<imaging::Picture> buttons = liveview::loadButtonImages(std::string(VEXLANE_SOURCE_DIR) + "/images", all);
    if (!all)
        state.SkipWithError("interface pictures missing");
    const auto newView = [&] {
        liveview::LiveView view;
        view.buttonImages = buttons;
        view.hover.hoverTile = 1;
        view.hover.hoverButton = 100;
        return view;
    };
    liveview::LiveView view = newView();
    const liveview::DrawHooks hooks;
    liveview::drawCamera(table, view, 1920, 1040, hooks);   // the layout, and the tiles to lend
    PictureSets sets;
    for (int set = 0; set < 2; ++set)
        for (int i = 0; i < streams; ++i) {
            sets.image[set].push_back(imaging::copyOf(streamPicture(i + set)));
            sets.tile[set].push_back(imaging::tilePicture(sets.image[set].back(), view.grid.tileSize));
        }
    setPictures(table, sets, 0, which == Case::newPictures);
    liveview::drawCamera(table, view, 1920, 1040, hooks);
    int turn = 0;
    for (auto _ : state) {
        if (which == Case::newPictures)
            setPictures(table, sets, ++turn % 2, true);
        if (which == Case::fromScratch)
            view = newView();
        liveview::ZonePicture zone = liveview::drawCamera(table, view, 1920, 1040, hooks);
        benchmark::DoNotOptimize(zone.pixels.data);
    }
    state.counters["tile"] = view.grid.tileSize;
}

void drawCameraUnchanged(benchmark::State& state) { drawCameraCase(state, Case::unchanged); }
void drawCameraNewPictures(benchmark::State& state) { drawCameraCase(state, Case::newPictures); }
void drawCameraFromScratch(benchmark::State& state) { drawCameraCase(state, Case::fromScratch); }

BENCHMARK(drawCameraUnchanged)->Arg(16)->Arg(100)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(drawCameraNewPictures)->Arg(16)->Arg(100)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(drawCameraFromScratch)->Arg(16)->Arg(100)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace

int main(int argc, char** argv)
{
    setenv("QT_QPA_PLATFORM", "offscreen", 0);
    QGuiApplication app(argc, argv);   // text drawing needs the GUI application
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    vx::bench::RatioReporter report;
    benchmark::RunSpecifiedBenchmarks(&report);
    for (const char* n : {"16", "100"}) {
        const std::string streams = std::string(n) + " streams";
        report.printRatio(("drawCamera, " + streams + ", unchanged").c_str(), std::string("drawCameraUnchanged/") + n,
                          std::string("drawCameraFromScratch/") + n, "<= 3 ms at 100");
        report.printRatio(("drawCamera, " + streams + ", all new pictures").c_str(),
                          std::string("drawCameraNewPictures/") + n, std::string("drawCameraFromScratch/") + n,
                          "<= 3 ms at 100");
    }
    benchmark::Shutdown();
    return 0;
}
