#pragma once
// The live view's own state: the grid of the last drawing, what the mouse is
// over, and the tile buttons' pictures. One object for the manager's window;
// tests make their own. Every field is read and written under the stream
// table's drawing lock, except buttonImages, which is filled once before the
// first drawing and only read afterwards.
#include <cstdint>
#include <string>
#include <vector>

#include "imaging/picture.h"

#include "liveview/tile_grid.h"

namespace vx::liveview {

struct TileHover {
    std::int32_t hoverTile = noTile;   // as tileAt gives it
    std::int32_t hoverButton = -1;     // as buttonAt gives it
    bool redrawNeeded = false;         // the hover changed; the zone must be drawn again
};

// A stream's tile as the last drawing made it, with everything it was made
// from: a tile whose stream, picture, size and hover are all unchanged is
// copied from here instead of being drawn again.
struct TileMemo {
    imaging::Picture pixels;   // three channels, as it went into the zone
    imaging::Picture image;    // the picture it shows (held: its address names it alone)
    int side = 0;
    std::int32_t id = 0;
    std::string videoName;
    bool unShowVideo = false, running = false, planned = false, buttonOpen = false, buttonClose = false;
    bool connected = false, hovered = false;
    std::int32_t hoverButton = -1;
};

struct LiveView {
    TileGrid grid;
    TileHover hover;
    std::vector<imaging::Picture> buttonImages = std::vector<imaging::Picture>(12);   // see interface_images.h
    // A text over the zone's origin; nothing in the manager sets it.
    bool statusOverlay = false;
    std::string statusOverlayText;
    // Counts the drawings, so that a late picture never replaces a newer one.
    std::uint64_t drawSerial = 0;
    // What the last drawing can lend the next: the tiles by table index,
    // the button pictures they were drawn with (held, as above), and the
    // zone's pixels, drawn into again when nobody else holds them.
    std::vector<TileMemo> tileMemos;
    std::vector<imaging::Picture> memoButtonImages;
    imaging::Picture lastZone;
};

} // namespace vx::liveview
