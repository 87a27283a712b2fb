#pragma once
// The mouse over the tile area: which tile and which button it is over.
#include "state/stream_table.h"
#include "liveview/live_view.h"

namespace vx::liveview {

struct TileHit {
    int tile = noTile;   // as tileAt gives it
    int button = -1;     // as buttonAt gives it; -1 off a stream's tile
};

// The tile and button under a zone point of the last drawing. Coordinates
// above 60000 count as -1.
TileHit hitTest(core::StreamTable& table, const LiveView& view, int x, int y);

// A mouse movement: remembers the tile and button under the point and
// returns true when either changed, so that the zone is drawn again at once.
bool updateHover(core::StreamTable& table, LiveView& view, int x, int y);

} // namespace vx::liveview
