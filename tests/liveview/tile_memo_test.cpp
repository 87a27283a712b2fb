// Drawings that reuse the last one: a tile drawn from unchanged things is
// copied, and every drawing must equal one made from scratch.
#include <gtest/gtest.h>

#include <cstring>
#include <functional>

#include "imaging/picture_ops.h"
#include "live_fixture.h"
#include "liveview/interface_images.h"
#include "liveview/overlay.h"
#include "liveview/tile_hover.h"
#include "liveview/tile_pictures.h"

namespace vx::liveview {
namespace {

bool samePixels(const imaging::Picture& a, const imaging::Picture& b)
{
    if (a.width != b.width || a.height != b.height || a.channels != b.channels)
        return false;
    for (int y = 0; y < a.height; ++y)
        if (std::memcmp(a.row(y), b.row(y), static_cast<std::size_t>(a.width * a.channels)) != 0)
            return false;
    return true;
}

TEST(TileMemo, EveryDrawingEqualsOneFromScratch)
{
    test::ensureGuiApplication();
    core::StreamTable table;
    for (int id = 1; id <= 5; ++id)
        test::addSampleStream(table, id);
    LiveView view;
    bool all = false;
    view.buttonImages = loadButtonImages(test::sourceImagesFolder(), all);
    ASSERT_TRUE(all);
    const DrawHooks hooks;
    const auto setRecord = [&](int i, const std::function<void(core::CameraRuntime&)>& change) {
        table.withDrawLock([&](std::vector<core::CameraRuntime>& r) { change(r[static_cast<std::size_t>(i)]); });
    };
    int width = 900, height = 500;
    const auto check = [&](const char* step) {
        const ZonePicture memoised = drawCamera(table, view, width, height, hooks);
        LiveView fresh;
        fresh.buttonImages = view.buttonImages;
        fresh.hover = view.hover;
        const ZonePicture scratch = drawCamera(table, fresh, width, height, hooks);
        EXPECT_TRUE(samePixels(memoised.pixels, scratch.pixels)) << step;
    };
    check("first");
    setRecord(1, [](core::CameraRuntime& r) {
        r.image = test::plainPicture(320, 240, 3, {0, 0, 200, 0});
        r.hasImage = true;
        r.channel.window = 7;
    });
    check("a picture");
    // As a stored picture comes: with its tile picture made beforehand.
    setRecord(2, [&](core::CameraRuntime& r) {
        r.image = test::plainPicture(160, 160, 3, {0, 200, 0, 0});
        r.tilePicture = imaging::tilePicture(r.image, view.grid.tileSize);
        r.tilePictureSource = r.image;
        r.hasImage = true;
        r.channel.window = 8;
    });
    check("a ready tile picture");
    {
        // The ready tile picture gives the tile the stretching would.
        const imaging::Picture ready = imaging::copyOf(drawCamera(table, view, width, height, hooks).pixels);
        setRecord(2, [](core::CameraRuntime& r) { r.tilePicture = imaging::Picture(); });
        LiveView fresh;
        fresh.buttonImages = view.buttonImages;
        EXPECT_TRUE(samePixels(ready, drawCamera(table, fresh, width, height, hooks).pixels));
    }
    // The tile picture of an earlier picture is not taken for a new one.
    setRecord(2, [](core::CameraRuntime& r) { r.image = test::plainPicture(160, 160, 3, {200, 0, 0, 0}); });
    check("a new picture after a ready one");
    view.hover.hoverTile = 1;
    view.hover.hoverButton = buttonSettings;
    check("hover");
    view.hover.hoverButton = noButton;
    check("hover off the button");
    setRecord(1, [](core::CameraRuntime& r) { r.config.videoName = "other"; });
    check("renamed");
    setRecord(3, [](core::CameraRuntime& r) {
        r.running = true;
        r.control.buttonOpen = true;
    });
    check("running, with a text button");
    setRecord(1, [](core::CameraRuntime& r) { r.hasImage = false; });
    check("stale");
    width = 1400;
    check("wider zone, larger tiles");
    std::string name;
    table.removeStream(0, name);
    check("first stream removed");
}

TEST(TileMemo, UnchangedTilesAreCopiedAndAHeldZoneStaysAsItWas)
{
    test::ensureGuiApplication();
    core::StreamTable table;
    test::addSampleStream(table, 1);
    test::addSampleStream(table, 2);
    LiveView view;
    const DrawHooks hooks;
    drawCamera(table, view, 640, 480, hooks);
    ASSERT_EQ(view.tileMemos.size(), 2u);
    const std::uint8_t* first = view.tileMemos[0].pixels.data;
    const std::uint8_t* second = view.tileMemos[1].pixels.data;
    const ZonePicture held = drawCamera(table, view, 640, 480, hooks);
    EXPECT_EQ(view.tileMemos[0].pixels.data, first);
    EXPECT_EQ(view.tileMemos[1].pixels.data, second);
    // The side of the last drawing goes to the table for the pictures to come.
    EXPECT_EQ(table.tileSide(), view.grid.tileSize);

    const imaging::Picture before = imaging::copyOf(held.pixels);
    view.hover.hoverTile = 0;
    const ZonePicture hovered = drawCamera(table, view, 640, 480, hooks);
    EXPECT_NE(view.tileMemos[0].pixels.data, first);   // drawn again
    EXPECT_EQ(view.tileMemos[1].pixels.data, second);
    EXPECT_NE(hovered.pixels.data, held.pixels.data);  // the held zone is not drawn into
    EXPECT_TRUE(samePixels(held.pixels, before));
}

} // namespace
} // namespace vx::liveview
