#pragma once
// The tile area's picture: every stream's tile and the "add" tile on a gray
// zone, composed in one picture under the stream table's drawing lock.
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "imaging/picture.h"
#include "state/stream_table.h"
#include "liveview/live_view.h"

namespace vx::liveview {

struct DrawHooks {
    // The window titled `videoName`, 0 when none; a stream whose window or
    // picture is missing is looked up again at every drawing. Null: no
    // look-up.
    std::function<platform::WindowHandle(const std::string& videoName)> findWindow;
};

// One stream's tile, three channels, tileSize square. Runs under the drawing
// lock (`records` are the table's own); may store the window it looked up.
imaging::Picture drawTile(const LiveView& view, std::vector<core::CameraRuntime>& records, int index,
                 const DrawHooks& hooks);

// The "add" tile of side `tile`, three channels.
imaging::Picture drawAddTile(int tile, bool hovered);

struct ZonePicture {
    imaging::Picture pixels;   // three channels, eight bits, the zone's size
    std::uint64_t serial = 0;  // higher is newer
};

// Lays out and draws the whole zone. A width of -1 takes the size of the
// last drawing (the smallest zone before the first).
ZonePicture drawCamera(core::StreamTable& table, LiveView& view, int width, int height, const DrawHooks& hooks);

} // namespace vx::liveview
