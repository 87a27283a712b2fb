#pragma once
// Where the tiles go: one square tile per stream and, behind them, the "add"
// tile, laid out for a drawing zone of any size. Pure arithmetic; the zone's
// owner keeps the grid and rebuilds it at every drawing.
#include <cstdint>
#include <vector>

namespace vx::liveview {

struct TileRect {
    int x = 0, y = 0, width = 0, height = 0;
    // Left and top edges belong to the rectangle, right and bottom don't.
    bool contains(int px, int py) const { return px >= x && px < x + width && py >= y && py < y + height; }
    bool operator==(const TileRect&) const = default;
};

// The last layout. Written only under the stream table's drawing lock.
struct TileGrid {
    std::int32_t zoneWidth = 0, zoneHeight = 0;   // 0 until the first layout
    std::int32_t minZoneWidth = 640, minZoneHeight = 480;
    std::int32_t tileSize = 0;                     // a multiple of 4; 0 until the first layout
    std::vector<TileRect> tileRects;               // one per stream, in table order
    TileRect addTileRect;                          // width 0 until the first layout
    std::int32_t requestWidth = 320, requestHeight = 320;   // the size asked of a stream
};

// The figures of one layout.
struct TileLayout {
    int rows = 0, columns = 0;
    int gap = 0;            // the gap of the row search
    int tile = 0;
    int gapX = 0, gapY = 0; // the spare room spread between the tiles
};

constexpr int tileRowLimit = 50;

// The row search for `streamCount` streams (plus the "add" tile) on a zone
// of width by height.
TileLayout computeTileLayout(int width, int height, int streamCount);
// The rectangle of the tile at `position`, left to right, then top to bottom.
TileRect tilePosition(const TileLayout& layout, int position);

// Lays the grid out for a zone of width by height: stores the zone size,
// tileSize, one rectangle per stream and the "add" tile's. Logs the zone.
TileLayout layoutTiles(TileGrid& grid, int width, int height, int streamCount);

// The tile under a zone point: its position in the table, addTile for the
// "add" tile, noTile for none (and for a zone never laid out).
constexpr int noTile = -1;
constexpr int addTile = -2;
int tileAt(const TileGrid& grid, int x, int y);

// A mouse coordinate as the tile area reports it: above 60000 is a negative
// value that came as an unsigned 16-bit number, and counts as -1.
inline int mouseCoordinate(int value) { return value > 60000 ? -1 : value; }

} // namespace vx::liveview
