#include "liveview/tile_pictures.h"

#include <algorithm>

#include "imaging/picture_ops.h"
#include "liveview/overlay.h"
#include "liveview/parallel_work.h"
#include "liveview/text_renderer.h"
#include "maintenance/system_log.h"

namespace vx::liveview {

namespace {

// Puts a four-channel tile into the three-channel zone at `rect`, clipped
// to the zone: at 100 streams the "add" tile's place can lie below the
// zone's bottom.
void putIntoZone(const imaging::Picture& tile, imaging::Picture& zone, const TileRect& rect)
{
    if (tile.empty())
        return;
    const imaging::PictureRect place{rect.x, rect.y, tile.width, tile.height};
    const imaging::PictureRect visible = imaging::intersection(place, zone.bounds());
    if (visible.width <= 0 || visible.height <= 0)
        return;
    imaging::Picture target = imaging::region(zone, visible);   // the zone's own pixels
    const imaging::Picture source =
        imaging::region(tile, {visible.x - place.x, visible.y - place.y, visible.width, visible.height});
    imaging::convertInto(source, target);
}

// A stream's picture into a four-channel tile, stretched to the square.
// False when there is none to put (the tile is then still to be filled).
// The picture made for the tile as it was stored is the same pixels, when
// it is still of this picture and this side.
bool putPicture(const core::CameraRuntime& record, imaging::Picture& tile)
{
    const imaging::Picture& image = record.image;
    if (image.empty() || (image.channels != 1 && image.channels != 3 && image.channels != 4))
        return false;
    const imaging::Picture& ready = record.tilePicture;
    if (record.tilePictureSource.data == image.data && !ready.empty() && ready.channels == 4 &&
        ready.width == tile.width && ready.height == tile.height)
        imaging::convertInto(ready, tile);
    else
        imaging::convertInto(imaging::scaled(image, tile.width, tile.height), tile);
    return true;
}

// A picture of one colour.
imaging::Picture filled(int width, int height, int channels, const imaging::PictureColour& colour)
{
    imaging::Picture pixels = imaging::makePicture(width, height, channels);
    imaging::fill(pixels, colour);
    return pixels;
}

} // namespace

namespace {

// A stream without window or fresh picture: its window is looked up again,
// and the result (also none) is kept in the table's channel.
void lookUpWindow(core::CameraRuntime& record, const DrawHooks& hooks)
{
    if ((record.channel.window == 0 || !record.hasImage) && hooks.findWindow)
        record.channel.window = hooks.findWindow(record.config.videoName);
}

// The tile in four channels, with everything on it; the zone drops the
// fourth channel as it takes the tile in. `buttonImages` are the view's or
// the same already at the small buttons' side and in four channels.
imaging::Picture composeTile(const LiveView& view, const std::vector<imaging::Picture>& buttonImages,
                             std::vector<core::CameraRuntime>& records, int index, const DrawHooks& hooks)
{
    const int tile = view.grid.tileSize;
    if (index < 0 || index >= static_cast<int>(records.size()) || tile <= 0)
        return imaging::Picture();
    core::CameraRuntime& record = records[static_cast<std::size_t>(index)];
    lookUpWindow(record, hooks);

    imaging::Picture pixels = imaging::makePicture(tile, tile, 4);
    if (!putPicture(record, pixels))
        imaging::fill(pixels, {0, 0, 0, 255});
    const bool hovered = view.hover.hoverTile == index;
    if (hovered)
        imaging::drawRectangle(pixels, {0, 0, tile, tile}, {0, 255, 255, 0}, 1);
    const int hoveredButton = hovered ? view.hover.hoverButton : noButton;
    drawSmallButtons(pixels, buttonImages, record, hoveredButton);
    drawLargeButtons(pixels, record, hoveredButton);
    drawTileTexts(pixels, record, record.channel.window != 0 && record.hasImage);
    return pixels;
}

// Everything a tile is drawn from, as its memo keeps it.
TileMemo memoOf(const LiveView& view, const core::CameraRuntime& record, int index)
{
    TileMemo memo;
    memo.image = record.image;
    memo.side = view.grid.tileSize;
    memo.id = record.id;
    memo.videoName = record.config.videoName;
    memo.unShowVideo = record.config.unShowVideo;
    memo.running = record.running;
    memo.planned = record.planned;
    memo.buttonOpen = record.control.buttonOpen;
    memo.buttonClose = record.control.buttonClose;
    memo.connected = record.channel.window != 0 && record.hasImage;
    memo.hovered = view.hover.hoverTile == index;
    memo.hoverButton = memo.hovered ? view.hover.hoverButton : noButton;
    return memo;
}

bool sameTile(const TileMemo& a, const TileMemo& b)
{
    return a.image.data == b.image.data && a.side == b.side && a.id == b.id && a.videoName == b.videoName &&
           a.unShowVideo == b.unShowVideo && a.running == b.running && a.planned == b.planned &&
           a.buttonOpen == b.buttonOpen && a.buttonClose == b.buttonClose && a.connected == b.connected &&
           a.hovered == b.hovered && a.hoverButton == b.hoverButton;
}

bool sameButtonImages(const std::vector<imaging::Picture>& a, const std::vector<imaging::Picture>& b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](const imaging::Picture& x, const imaging::Picture& y) { return x.data == y.data; });
}

// The zone filled with gray: the last zone's pixels when nobody else holds
// them any more and the size is the same, new pixels otherwise.
imaging::Picture grayZone(LiveView& view, int width, int height)
{
    imaging::Picture zone = view.lastZone;
    view.lastZone = imaging::Picture();
    if (zone.empty() || zone.width != width || zone.height != height || zone.channels != 3 ||
        zone.owner.use_count() != 1)
        zone = imaging::makePicture(width, height, 3);
    imaging::fill(zone, {128, 128, 128, 0});
    return zone;
}

} // namespace

imaging::Picture drawTile(const LiveView& view, std::vector<core::CameraRuntime>& records, int index,
                          const DrawHooks& hooks)
{
    const imaging::Picture pixels = composeTile(view, view.buttonImages, records, index, hooks);
    if (pixels.empty())
        return pixels;
    imaging::Picture out = imaging::makePicture(pixels.width, pixels.height, 3);
    imaging::convertInto(pixels, out);
    return out;
}

imaging::Picture drawAddTile(int tile, bool hovered)
{
    if (tile <= 0)
        return imaging::Picture();
    const imaging::PictureColour colour{253, 180, 0, 0};
    const int thickness = std::max(1, tile / 100);
    imaging::Picture pixels = filled(tile, tile, 3, {60, 40, 0, 0});
    imaging::drawRectangle(pixels, {0, 0, tile, tile}, colour, thickness);
    const int middle = tile / 2;
    const int from = static_cast<int>(tile * 0.43);
    const int to = static_cast<int>(tile * 0.57);
    imaging::drawLine(pixels, from, middle, to, middle, colour, thickness);
    imaging::drawLine(pixels, middle, from, middle, to, colour, thickness);
    if (hovered)
        imaging::drawRectangle(pixels, {0, 0, tile, tile}, {0, 255, 255, 0}, 1);
    return pixels;
}

ZonePicture drawCamera(core::StreamTable& table, LiveView& view, int width, int height, const DrawHooks& hooks)
{
    ZonePicture result;
    table.withDrawLock([&](std::vector<core::CameraRuntime>& records) {
        if (width == -1) {
            width = view.grid.zoneWidth > 0 ? view.grid.zoneWidth : view.grid.minZoneWidth;
            height = view.grid.zoneHeight > 0 ? view.grid.zoneHeight : view.grid.minZoneHeight;
        }
        // A zone of no size is drawn as one pixel, so that the picture is
        // never empty.
        width = std::max(width, 1);
        height = std::max(height, 1);
        const int count = static_cast<int>(records.size());
        layoutTiles(view.grid, width, height, count);

        table.setTileSide(view.grid.tileSize);
        imaging::Picture zone = grayZone(view, width, height);
        // The look-ups go first, in table order, on this thread; then the
        // tiles are composed side by side, each into its own part of the
        // zone. A tile drawn from the same things as last time is copied.
        for (core::CameraRuntime& record : records)
            lookUpWindow(record, hooks);
        if (!sameButtonImages(view.memoButtonImages, view.buttonImages)) {
            view.tileMemos.clear();
            view.memoButtonImages = view.buttonImages;
        }
        view.tileMemos.resize(static_cast<std::size_t>(count));
        // The button pictures at the small buttons' side, once for all tiles.
        std::vector<imaging::Picture> buttons;
        const int buttonSide = smallButtonSide(view.grid.tileSize);
        for (const imaging::Picture& picture : view.buttonImages) {
            imaging::Picture sized = buttonSide >= 4 ? imaging::tilePicture(picture, buttonSide) : imaging::Picture();
            buttons.push_back(sized.empty() ? picture : sized);
        }
        const DrawHooks noLookUp;
        forEachInParallel(count, [&](int i) {
            const auto at = static_cast<std::size_t>(i);
            TileMemo memo = memoOf(view, records[at], i);
            TileMemo& last = view.tileMemos[at];
            if (last.pixels.empty() || !sameTile(last, memo)) {
                const imaging::Picture pixels = composeTile(view, buttons, records, i, noLookUp);
                memo.pixels = imaging::makePicture(pixels.width, pixels.height, 3);
                imaging::convertInto(pixels, memo.pixels);
                last = std::move(memo);
            }
            putIntoZone(last.pixels, zone, view.grid.tileRects[at]);
        });
        VX_LOG(maintenance::logTrace, "add camera");
        putIntoZone(drawAddTile(view.grid.tileSize, view.hover.hoverTile == addTile), zone, view.grid.addTileRect);
        if (view.statusOverlay)
            drawText(zone, "arial", 20, view.statusOverlayText, 0, 0, 200, 100, textWordBreak);
        view.hover.redrawNeeded = false;
        result.pixels = zone;
        view.lastZone = zone;
        result.serial = ++view.drawSerial;
    });
    return result;
}

} // namespace vx::liveview
