#include "liveview/tile_pictures.h"

#include <algorithm>

#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>
#include <tbb/parallel_for.h>

#include "liveview/overlay.h"
#include "liveview/text_renderer.h"
#include "maintenance/system_log.h"

namespace vx::liveview {

namespace {

// Puts a four-channel tile into the three-channel zone at `rect`, clipped
// to the zone: at 100 streams the "add" tile's place can lie below the
// zone's bottom.
void putIntoZone(const cv::Mat& tile, cv::Mat& zone, const TileRect& rect)
{
    if (tile.empty())
        return;
    const cv::Rect place(rect.x, rect.y, tile.cols, tile.rows);
    const cv::Rect visible = place & cv::Rect(0, 0, zone.cols, zone.rows);
    if (visible.empty())
        return;
    cv::Mat target = zone(visible);
    const cv::Mat source = tile(visible - place.tl());
    if (source.channels() == 4)
        cv::cvtColor(source, target, cv::COLOR_BGRA2BGR);   // writes into the zone's own pixels
    else
        source.copyTo(target);
}

// A stream's picture into a four-channel tile, stretched to the square.
// False when there is none to put (the tile is then still to be filled).
bool putPicture(const cv::Mat& image, cv::Mat& tile)
{
    if (image.empty() || image.depth() != CV_8U)
        return false;
    cv::Mat resized;
    cv::resize(image, resized, tile.size(), 0, 0, cv::INTER_LINEAR);
    switch (resized.channels()) {
    case 3:
        cv::cvtColor(resized, tile, cv::COLOR_BGR2BGRA);
        return true;
    case 4:
        resized.copyTo(tile);
        return true;
    case 1:
        cv::cvtColor(resized, tile, cv::COLOR_GRAY2BGRA);
        return true;
    default:
        return false;
    }
}

// A picture of one colour. setTo, not the filling constructor: the latter
// takes some fifty times as long, which counts at a hundred tiles a second.
cv::Mat filled(int rows, int cols, int type, const cv::Scalar& colour)
{
    cv::Mat pixels(rows, cols, type);
    pixels.setTo(colour);
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
// fourth channel as it takes the tile in.
cv::Mat composeTile(const LiveView& view, std::vector<core::CameraRuntime>& records, int index,
                    const DrawHooks& hooks)
{
    const int tile = view.grid.tileSize;
    if (index < 0 || index >= static_cast<int>(records.size()) || tile <= 0)
        return cv::Mat();
    core::CameraRuntime& record = records[static_cast<std::size_t>(index)];
    lookUpWindow(record, hooks);

    cv::Mat pixels(tile, tile, CV_8UC4);
    if (!putPicture(record.image, pixels))
        pixels.setTo(cv::Scalar(0, 0, 0, 255));
    const bool hovered = view.hover.hoverTile == index;
    if (hovered)
        cv::rectangle(pixels, cv::Rect(0, 0, tile, tile), cv::Scalar(0, 255, 255, 0), 1);
    const int hoveredButton = hovered ? view.hover.hoverButton : noButton;
    drawSmallButtons(pixels, view.buttonImages, record, hoveredButton);
    drawLargeButtons(pixels, record, hoveredButton);
    drawTileTexts(pixels, record, record.channel.window != 0 && record.hasImage);
    return pixels;
}

} // namespace

cv::Mat drawTile(const LiveView& view, std::vector<core::CameraRuntime>& records, int index, const DrawHooks& hooks)
{
    const cv::Mat pixels = composeTile(view, records, index, hooks);
    if (pixels.empty())
        return pixels;
    cv::Mat out;
    cv::cvtColor(pixels, out, cv::COLOR_BGRA2BGR);
    return out;
}

cv::Mat drawAddTile(int tile, bool hovered)
{
    if (tile <= 0)
        return cv::Mat();
    const cv::Scalar colour(253, 180, 0);
    const int thickness = std::max(1, tile / 100);
    cv::Mat pixels = filled(tile, tile, CV_8UC3, cv::Scalar(60, 40, 0));
    cv::rectangle(pixels, cv::Rect(0, 0, tile, tile), colour, thickness);
    const int middle = tile / 2;
    const int from = static_cast<int>(tile * 0.43);
    const int to = static_cast<int>(tile * 0.57);
    cv::line(pixels, cv::Point(from, middle), cv::Point(to, middle), colour, thickness);
    cv::line(pixels, cv::Point(middle, from), cv::Point(middle, to), colour, thickness);
    if (hovered)
        cv::rectangle(pixels, cv::Rect(0, 0, tile, tile), cv::Scalar(0, 255, 255), 1);
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

        cv::Mat zone = filled(height, width, CV_8UC3, cv::Scalar(128, 128, 128));
        // The look-ups go first, in table order, on this thread; then the
        // tiles are composed side by side, each into its own part of the zone.
        for (core::CameraRuntime& record : records)
            lookUpWindow(record, hooks);
        const DrawHooks noLookUp;
        tbb::parallel_for(0, count, [&](int i) {
            putIntoZone(composeTile(view, records, i, noLookUp), zone, view.grid.tileRects[static_cast<std::size_t>(i)]);
        });
        VX_LOG(maintenance::logTrace, "add camera");
        putIntoZone(drawAddTile(view.grid.tileSize, view.hover.hoverTile == addTile), zone, view.grid.addTileRect);
        if (view.statusOverlay)
            drawText(zone, "arial", 20, view.statusOverlayText, 0, 0, 200, 100, textWordBreak);
        view.hover.redrawNeeded = false;
        result.pixels = zone;
        result.serial = ++view.drawSerial;
    });
    return result;
}

} // namespace vx::liveview
