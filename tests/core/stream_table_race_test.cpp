// Deleting and renaming streams on the main thread while the timer thread
// updates and draws the tiles: the table's locks keep the two apart (run
// under ThreadSanitizer to see it).
#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include "state/stream_table.h"
#include "liveview/tile_pictures.h"

using namespace vx;
using namespace vx::core;

TEST(StreamTableRace, RemovesAndRenamesWhileTicksDraw)
{
    StreamTable table;
    liveview::LiveView view;
    std::atomic<bool> done{false};
    std::atomic<int> drawings{0};
    std::thread ticks([&] {
        UpdateCameraHooks update;
        update.now = [] { return std::int64_t{100}; };
        update.findWindow = [](const std::string& name) { return name.size() % 2 ? platform::WindowHandle{7} : 0; };
        liveview::DrawHooks draw;
        draw.findWindow = [](const std::string& name) { return name.empty() ? platform::WindowHandle{0} : 9; };
        while (!done) {
            table.updateCamera(update, 64, 64);
            liveview::drawCamera(table, view, 320, 240, draw);
            ++drawings;
        }
    });
    for (int round = 0; round < 300; ++round) {
        for (int k = 0; k < 4; ++k) {
            config::CameraCommon common;
            common.videoName = "stream " + std::to_string(round) + "/" + std::to_string(k);
            std::int32_t id = 0;
            table.addStream(common, {}, {}, id, false);
        }
        config::CameraCommon renamed = table.getConfig(1);
        renamed.videoName = "renamed after round " + std::to_string(round);
        table.setConfig(1, renamed);
        config::CameraRecognition recognition = table.getRecognition(2);
        table.setRecognition(2, recognition);
        bool planned = false;
        table.togglePlanned(0, planned);
        std::string name;
        while (table.size() > 0)
            table.removeStream(table.size() - 1, name);
    }
    // Bounded: the drawing thread gets a few more passes at most.
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    const int seen = drawings;
    while (drawings < seen + 2 && std::chrono::steady_clock::now() < end)
        std::this_thread::yield();
    done = true;
    ticks.join();
    EXPECT_EQ(table.size(), 0);
    EXPECT_GT(drawings.load(), 0);
}
