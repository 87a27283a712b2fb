#include "liveview/tile_grid.h"

#include <algorithm>
#include <string>

#include "maintenance/system_log.h"

namespace vx::liveview {

namespace {

// One try of the row search: gap, tile and columns for r rows.
void tryRows(TileLayout& layout, int width, int height, int rows)
{
    layout.gap = static_cast<int>((height / rows) * 0.05);
    int tile = (height - (rows + 1) * layout.gap) / rows;
    layout.tile = tile - tile % 4;
    const int step = layout.tile + layout.gap;
    // A zone with no height gives tiles of no size; no column fits then.
    layout.columns = step > 0 ? (width - layout.gap) / step : 0;
}

} // namespace

TileLayout computeTileLayout(int width, int height, int streamCount)
{
    const int n = std::min(streamCount + 1, 100);
    TileLayout layout;
    int rows = 2;
    for (;;) {
        tryRows(layout, width, height, rows);
        if (layout.columns * rows >= n)
            break;
        if (rows + 1 >= tileRowLimit) {
            // The limit: 50 rows, with tile and columns of 49.
            rows = tileRowLimit;
            break;
        }
        ++rows;
    }
    layout.rows = rows;
    layout.gapX = (width - layout.columns * layout.tile) / (layout.columns + 1);
    layout.gapY = (height - rows * layout.tile) / (rows + 1);
    return layout;
}

TileRect tilePosition(const TileLayout& layout, int position)
{
    // No column at all still places every tile in the first one.
    const int columns = std::max(layout.columns, 1);
    return TileRect{(layout.tile + layout.gapX) * (position % columns) + layout.gapX,
                    (layout.tile + layout.gapY) * (position / columns) + layout.gapY, layout.tile,
                    layout.tile};
}

TileLayout layoutTiles(TileGrid& grid, int width, int height, int streamCount)
{
    VX_LOG(maintenance::logTrace,
           "draw cameras. zone h = " + std::to_string(height) + " w = " + std::to_string(width));
    grid.zoneWidth = width;
    grid.zoneHeight = height;
    const TileLayout layout = computeTileLayout(width, height, streamCount);
    grid.tileSize = layout.tile;
    grid.tileRects.clear();
    for (int i = 0; i < streamCount; ++i)
        grid.tileRects.push_back(tilePosition(layout, i));
    grid.addTileRect = tilePosition(layout, streamCount);
    return layout;
}

int tileAt(const TileGrid& grid, int x, int y)
{
    if (grid.addTileRect.width == 0)
        return noTile;
    if (grid.addTileRect.contains(x, y))
        return addTile;
    for (std::size_t i = 0; i < grid.tileRects.size(); ++i)
        if (grid.tileRects[i].contains(x, y))
            return static_cast<int>(i);
    return noTile;
}

} // namespace vx::liveview
