#include "liveview/tile_hover.h"

#include "liveview/overlay.h"

namespace vx::liveview {

namespace {

TileHit hitUnlocked(const std::vector<core::CameraRuntime>& records, const LiveView& view, int x, int y)
{
    x = mouseCoordinate(x);
    y = mouseCoordinate(y);
    TileHit hit;
    hit.tile = tileAt(view.grid, x, y);
    hit.button = hit.tile < 0 ? noButton : buttonAt(view.grid, records, hit.tile, x, y);
    return hit;
}

} // namespace

TileHit hitTest(core::StreamTable& table, const LiveView& view, int x, int y)
{
    TileHit hit;
    table.withDrawLock([&](std::vector<core::CameraRuntime>& records) { hit = hitUnlocked(records, view, x, y); });
    return hit;
}

bool updateHover(core::StreamTable& table, LiveView& view, int x, int y)
{
    bool redraw = false;
    table.withDrawLock([&](std::vector<core::CameraRuntime>& records) {
        const TileHit hit = hitUnlocked(records, view, x, y);
        if (hit.tile != view.hover.hoverTile || hit.button != view.hover.hoverButton)
            view.hover.redrawNeeded = true;
        view.hover.hoverTile = hit.tile;
        view.hover.hoverButton = hit.button;
        redraw = view.hover.redrawNeeded;
    });
    return redraw;
}

} // namespace vx::liveview
