#pragma once
// The edit flow's test world: a manager state on a temporary config folder,
// a tile area laid out for its streams, clicks by zone, and hooks that note
// every dialog, drawing, task and request in order.
#include <future>
#include <string>
#include <vector>

#include "config/camera_config.h"
#include "config/main_config.h"
#include "config/text_codec.h"
#include "core/apply_edits.h"
#include "dialogs/messages.h"
#include "liveview/overlay.h"
#include "liveview/tile_grid.h"
#include "support/temp_dir.h"

namespace vx::test {

inline std::string cp(const char* utf8) { return config::utf8ToCp1251(utf8); }

struct EditWorld {
    TempDir root;
    core::AppState state;
    liveview::LiveView view;
    dialogs::ScriptedMessages messages;
    std::vector<std::string> calls;
    // What the stream dialog does to the scratch set; OK unless it says so.
    std::function<bool(core::ScratchCommon&)> streamDialog = [](core::ScratchCommon&) { return true; };
    std::function<bool(core::AppState&)> signalsDialog = [](core::AppState&) { return true; };

    EditWorld()
    {
        state.ConfigDirectory = root.path().string();
        state.storedMainConfig.videoChunk = 45;
        state.liveMainConfig.videoChunk = 45;
    }

    std::string configs() const { return state.ConfigDirectory; }

    // A stream with its file, as start-up leaves it; returns its index.
    int addStream(std::int32_t id, const std::string& name, const std::string& path = "rtsp://camera")
    {
        config::CameraConfig camera;
        camera.common.ID = id;
        camera.common.videoName = name;
        camera.common.videoPath = path;
        camera.common.autoRun = true;
        config::saveCamera(config::cameraFilePath(configs(), id), camera, 1234, 1235);
        state.streams.addStream(camera.common, camera.recognition, camera.control, id, true);
        config::saveConfig(configs(), state.storedMainConfig, state.streams.collectIds(),
                           state.streams.collectPlanned());
        state.liveMainConfig = state.storedMainConfig;
        return state.streams.size() - 1;
    }

    void setRunning(int index, bool running)
    {
        state.streams.withDrawLock([&](std::vector<core::CameraRuntime>& r) { r[index].running = running; });
    }

    core::EditHooks hooks()
    {
        core::EditHooks h;
        auto note = [this](const std::string& text) { calls.push_back(text); };
        h.streamDialog = [this, note] { note("stream dialog"); return streamDialog(state.scratchConfig); };
        h.recognitionDialog = [note] { note("recognition dialog"); return true; };
        h.signalsDialog = [this, note] { note("signals dialog"); return signalsDialog(state); };
        h.messages = &messages;
        h.redraw = [note] { note("redraw"); };
        h.videoStart = [note](int i) { note("start " + std::to_string(i)); };
        h.videoStop = [note](int i) { note("stop " + std::to_string(i)); };
        h.videoRestart = [note](int i) { note("restart " + std::to_string(i)); };
        h.sendHideCommand = [note](int kind, int show, int i) {
            note("hide " + std::to_string(kind) + " " + std::to_string(show) + " " + std::to_string(i));
        };
        h.requestControl = [note](const std::string& path, bool restart, std::int32_t value, std::int32_t open) {
            note("control " + path + (restart ? " restart " : " ") + std::to_string(value) + " " +
                 std::to_string(open));
        };
        // Every task runs at once: the order of the calls is the order of the starts.
        h.launch = [note](std::function<void()> task) {
            note("task");
            task();
            std::promise<void> done;
            done.set_value();
            return done.get_future();
        };
        h.spawn = [note](std::function<void()> task) { note("spawned"); task(); };
        return h;
    }

    // A click in the middle of a zone of the tile at `index`, on a zone laid
    // out for the table as it stands.
    void click(int index, int zone) { clickWith(hooks(), index, zone); }
    void clickWith(const core::EditHooks& h, int index, int zone)
    {
        liveview::layoutTiles(view.grid, 640, 480, state.streams.size());
        int x = 0;
        int y = 0;
        if (index == liveview::addTile) {
            x = view.grid.addTileRect.x + view.grid.addTileRect.width / 2;
            y = view.grid.addTileRect.y + view.grid.addTileRect.height / 2;
        } else {
            const liveview::TileRect& t = view.grid.tileRects[static_cast<std::size_t>(index)];
            const int w = t.width;
            const int b = liveview::smallButtonSide(w);
            switch (zone) {
            case 0: x = b / 2; y = w - b / 2; break;
            case 1: case 2: case 3: case 4: x = w - zone * b + b / 2; y = w - b / 2; break;
            case 5: x = w - b / 2; y = b / 2; break;
            case 6: x = w - b / 2; y = w - b - b / 2; break;
            case 7: x = w - b / 2; y = w - 2 * b - b / 2; break;
            case 100: x = w / 2; y = w * 33 / 100; break;
            case 101: x = w / 2; y = w * 68 / 100; break;
            default: x = w / 2; y = w / 2; break;   // the tile's free area
            }
            x += t.x;
            y += t.y;
        }
        core::editCamera(state, view, h, x, y);
    }

    config::CameraConfig readFile(std::int32_t id) const
    {
        config::CameraConfig camera;
        EXPECT_TRUE(config::loadCamera(config::cameraFilePath(configs(), id), camera, 45));
        return camera;
    }
};

} // namespace vx::test
