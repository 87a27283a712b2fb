#include <gtest/gtest.h>

#include <array>
#include <filesystem>
#include <utility>

#include "live_fixture.h"
#include "liveview/interface_images.h"
#include "liveview/overlay.h"
#include "liveview/tile_hover.h"
#include "liveview/tile_pictures.h"
#include "support/temp_dir.h"

namespace vx::liveview {
namespace {

class TilePictures : public ::testing::Test {
protected:
    void SetUp() override
    {
        test::ensureGuiApplication();
        bool all = false;
        view.buttonImages = loadButtonImages(test::sourceImagesFolder(), all);
        ASSERT_TRUE(all);
    }

    std::array<int, 3> pixel(const ZonePicture& zone, int x, int y) { return test::pixelAt(zone.pixels, x, y); }

    core::StreamTable table;
    LiveView view;
    DrawHooks hooks;
};

TEST_F(TilePictures, EmptyTableShowsGrayZoneAndTheAddTile)
{
    const ZonePicture zone = drawCamera(table, view, 640, 480, hooks);
    ASSERT_EQ(test::sizeOf(zone.pixels), std::pair(640, 480));
    ASSERT_EQ(zone.pixels.channels, 3);
    EXPECT_EQ(pixel(zone, 0, 0), (std::array<int, 3>{128, 128, 128}));
    // The add tile at (66, 13): its frame, its ground, its plus sign.
    EXPECT_EQ(pixel(zone, 66, 13), (std::array<int, 3>{253, 180, 0}));
    EXPECT_EQ(pixel(zone, 66 + 20, 13 + 20), (std::array<int, 3>{60, 40, 0}));
    EXPECT_EQ(pixel(zone, 66 + 110, 13 + 110), (std::array<int, 3>{253, 180, 0}));
    EXPECT_EQ(pixel(zone, 66 + 110, 13 + 80), (std::array<int, 3>{60, 40, 0}));

    // Hovered: a one-pixel rectangle in (0, 255, 255).
    view.hover.hoverTile = addTile;
    const ZonePicture hovered = drawCamera(table, view, -1, -1, hooks);
    EXPECT_EQ(pixel(hovered, 66, 13), (std::array<int, 3>{0, 255, 255}));
    EXPECT_EQ(pixel(hovered, 66 + 1, 13 + 1), (std::array<int, 3>{253, 180, 0}));
    EXPECT_GT(hovered.serial, zone.serial);
    // -1 takes the stored size.
    drawCamera(table, view, 800, 600, hooks);
    EXPECT_EQ(test::sizeOf(drawCamera(table, view, -1, -1, hooks).pixels), std::pair(800, 600));
}

TEST_F(TilePictures, AStreamWithoutPictureIsBlackAndLooksForItsWindow)
{
    test::addSampleStream(table, 4);
    int lookups = 0;
    hooks.findWindow = [&lookups](const std::string&) {
        ++lookups;
        return platform::WindowHandle(42);
    };
    const ZonePicture zone = drawCamera(table, view, 640, 480, hooks);
    EXPECT_EQ(pixel(zone, 66 + 200, 13 + 60), (std::array<int, 3>{0, 0, 0}));
    EXPECT_EQ(lookups, 1);
    // The window found is kept in the table's channel.
    EXPECT_EQ(table.record(0).channel.window, platform::WindowHandle(42));
}

TEST_F(TilePictures, ButtonsAreAddedOntoThePictureAndBrightenWhenHovered)
{
    test::addSampleStream(table, 1);
    table.withDrawLock([](std::vector<core::CameraRuntime>& records) {
        records[0].image = test::plainPicture(100, 100, 3, {40, 40, 40});
        records[0].hasImage = true;
        records[0].channel.window = 7;
    });
    // Tile 220, b = 24; button 1 (settings) in the bottom right corner.
    const int x = 66 + 220 - 24, y = 13 + 220 - 24;
    const ZonePicture plain = drawCamera(table, view, 640, 480, hooks);
    // The button's black corner leaves the picture as it was.
    EXPECT_EQ(pixel(plain, x, y), (std::array<int, 3>{40, 40, 40}));
    const std::array<int, 3> centre = pixel(plain, x + 12, y + 12);
    EXPECT_GT(centre[0], 40);

    ASSERT_TRUE(updateHover(table, view, x + 12, y + 12));
    EXPECT_EQ(view.hover.hoverTile, 0);
    EXPECT_EQ(view.hover.hoverButton, buttonSettings);
    const ZonePicture hovered = drawCamera(table, view, -1, -1, hooks);
    EXPECT_FALSE(view.hover.redrawNeeded);
    EXPECT_EQ(pixel(hovered, 66, 13), (std::array<int, 3>{0, 255, 255}));
    const std::array<int, 3> bright = pixel(hovered, x + 4, y + 12);
    const std::array<int, 3> dim = pixel(plain, x + 4, y + 12);
    EXPECT_GT(bright[0] + bright[1] + bright[2], dim[0] + dim[1] + dim[2]);

    // Same tile and button: nothing to redraw.
    EXPECT_FALSE(updateHover(table, view, x + 13, y + 12));
    EXPECT_TRUE(updateHover(table, view, 5, 5));
    EXPECT_EQ(view.hover.hoverTile, noTile);
    EXPECT_EQ(view.hover.hoverButton, noButton);
}

TEST_F(TilePictures, AMissingRunPictureLeavesTheButtonInvisibleButClickable)
{
    test::addSampleStream(table, 1);
    view.buttonImages[imageRun] = imaging::Picture();
    table.withDrawLock([](std::vector<core::CameraRuntime>& records) {
        records[0].image = test::plainPicture(100, 100, 3, {40, 40, 40});
    });
    const ZonePicture zone = drawCamera(table, view, 640, 480, hooks);
    EXPECT_EQ(pixel(zone, 66 + 12, 13 + 220 - 12), (std::array<int, 3>{40, 40, 40}));
    EXPECT_EQ(hitTest(table, view, 66 + 12, 13 + 220 - 12).button, buttonStartStop);
}

TEST_F(TilePictures, OddPicturesAndTinyTilesDrawWithoutFault)
{
    for (int id = 1; id <= 5; ++id)
        test::addSampleStream(table, id);
    table.withDrawLock([](std::vector<core::CameraRuntime>& records) {
        records[0].image = test::plainPicture(1000, 1, 3, {1, 2, 3});
        records[1].image = test::plainPicture(2, 500, 1, {9});
        records[3].image = test::plainPicture(40, 40, 4, {5, 6, 7, 8});
        records[4].control.buttonOpen = true;
        records[4].control.buttonClose = true;
    });
    view.buttonImages[imageDirect] = test::plainPicture(10, 10, 1, {255});
    view.buttonImages[imageRecognition] = test::plainPicture(3, 7, 3, {0, 0, 255});
    for (const auto& [width, height] : {std::pair{640, 480}, {100, 60}, {20, 480}, {1, 1}, {0, 0}, {3000, 40}}) {
        SCOPED_TRACE(width);
        const ZonePicture zone = drawCamera(table, view, width, height, hooks);
        EXPECT_FALSE(zone.pixels.empty());
    }
}

TEST(InterfaceImages, AllTwelveAndAMissingFileKeepsItsPlaceAndSaysSoOnce)
{
    core::StatusText status;
    LiveView view;
    EXPECT_TRUE(loadInterfaceImages(view, test::sourceImagesFolder(), status));
    ASSERT_EQ(view.buttonImages.size(), 12u);
    for (const imaging::Picture& image : view.buttonImages)
        EXPECT_EQ(image.channels, 4);
    EXPECT_EQ(status.get(), "");

    test::TempDir dir;
    for (std::size_t i = 0; i < buttonImageFiles.size(); ++i)
        if (i != imageRun)
            std::filesystem::copy_file(test::sourceImagesFolder() + "/" + buttonImageFiles[i],
                                       dir.path() / buttonImageFiles[i]);
    LiveView partial;
    EXPECT_FALSE(loadInterfaceImages(partial, dir.path(), status));
    ASSERT_EQ(partial.buttonImages.size(), 12u);
    EXPECT_TRUE(partial.buttonImages[imageRun].empty());
    EXPECT_FALSE(partial.buttonImages[imageStop].empty());
    EXPECT_EQ(status.get(), missingImagesText());
    EXPECT_EQ(missingImagesText().size(), 70u);   // one byte per letter in Windows-1251
}

} // namespace
} // namespace vx::liveview
