#pragma once
// Applying edits: a click on the tile area finds its tile and its zone, and
// the numbered action runs - a dialog on the scratch set, the result into
// the table, the files written, and then a restart, a signal to the stream,
// or a word to the control service. Runs on the main thread; the dialogs
// are modal.
#include <cstdint>
#include <functional>
#include <future>
#include <string>

#include "config/camera_config.h"
#include "state/app_state.h"
#include "dialogs/messages.h"
#include "liveview/live_view.h"

namespace vx::core {

// What an edit reaches beyond the state: the dialogs, the drawing, the
// stream processes and the control service. The window binds them; tests
// put in their own.
struct EditHooks {
    // The dialogs over the scratch set; true when one closed with OK.
    std::function<bool()> streamDialog;        // stream settings (120)
    std::function<bool()> recognitionDialog;   // recognition settings (124)
    std::function<bool()> signalsDialog;       // signals and reports (126)
    // The delete question and the report message.
    dialogs::Messages* messages = nullptr;
    // Draws the tile area again at once.
    std::function<void()> redraw;
    // Stream control; each runs as a task kept in pendingTasks.
    std::function<void(int index)> videoStart;   // the stream at `index`, ID -1
    std::function<void(int index)> videoStop;
    std::function<void(int index)> videoRestart;
    std::function<void(int kind, int show, int index)> sendHideCommand;
    // The control service's worker: path, restart, the form fields value and open.
    std::function<void(const std::string& path, bool restart, std::int32_t value, std::int32_t open)>
        requestControl;
    // Starts a task asynchronously (std::async unless a test says otherwise).
    std::function<std::future<void>(std::function<void()>)> launch;
    // Spawns a task on the request group and forgets it.
    std::function<void(std::function<void()>)> spawn;
};

// The zone of the console toggle: it has its branch in editCamera, but
// hitZone never gives it, so the console can't be toggled from a tile.
constexpr int zoneConsole = 7;

// The tile under a point of the last drawing: -1 for none, -2 for the add
// tile, else the stream's index.
int hitTile(AppState& state, const liveview::LiveView& view, int x, int y);
// The zone of the tile at `index` under the point; -1 for none.
int hitZone(AppState& state, const liveview::LiveView& view, int index, int x, int y);

// A click on the tile area at x, y (coordinates above 60000 count as -1).
void editCamera(AppState& state, const liveview::LiveView& view, const EditHooks& hooks, int x, int y);

// The add tile: the 100-stream limit, the stream dialog on a fresh record,
// the new stream into the table and its files, and "/UpdateConfig".
void addStreamFromTile(AppState& state, const EditHooks& hooks);

// Restart, signal or nothing, after the Common section of a running stream
// changed from `before` to `after`.
void applyStreamChange(AppState& state, const EditHooks& hooks, const config::CameraCommon& before,
                       const config::CameraCommon& after, int index);

} // namespace vx::core
