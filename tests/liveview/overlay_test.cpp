#include <gtest/gtest.h>

#include "liveview/overlay.h"

namespace vx::liveview {
namespace {

// Tile 256: b = 32.
constexpr int tile = 256;
constexpr int b = 32;

struct Box {
    int number;
    int left, top, right, bottom;   // exclusive bounds, relative to the tile
};

const Box smallBoxes[] = {
    {buttonStartStop, 0, tile - b, b, tile},
    {buttonSettings, tile - b, tile - b, tile, tile},
    {buttonRecognition, tile - 2 * b, tile - b, tile - b, tile},
    {buttonSignals, tile - 3 * b, tile - b, tile - 2 * b, tile},
    {buttonDelete, tile - 4 * b, tile - b, tile - 3 * b, tile},
    {buttonPlanned, tile - b, 0, tile, b},
    {buttonShowWindow, tile - b, tile - 2 * b, tile, tile - b},
};

TEST(ButtonInTile, InsideEachButtonAndNotOnItsEdges)
{
    for (const Box& box : smallBoxes) {
        SCOPED_TRACE(box.number);
        EXPECT_EQ(buttonInTile(tile, box.left + 1, box.top + 1, false, false), box.number);
        EXPECT_EQ(buttonInTile(tile, box.right - 1, box.bottom - 1, false, false), box.number);
        // Every edge is outside: the point on it hits no button, or the
        // neighbour only when strictly inside that one (never on a shared edge).
        EXPECT_EQ(buttonInTile(tile, box.left, box.top + 5, false, false), noButton);
        EXPECT_EQ(buttonInTile(tile, box.right, box.top + 5, false, false), noButton);
        EXPECT_EQ(buttonInTile(tile, box.left + 5, box.top, false, false), noButton);
        EXPECT_EQ(buttonInTile(tile, box.left + 5, box.bottom, false, false), noButton);
    }
    // The free area and the fifth place of the bottom row.
    EXPECT_EQ(buttonInTile(tile, 128, 128, false, false), noButton);
    EXPECT_EQ(buttonInTile(tile, tile - 5 * b + 10, tile - 10, false, false), noButton);
    // Next to the tile on the outside.
    EXPECT_EQ(buttonInTile(tile, tile + 1, tile - 10, false, false), noButton);
}

TEST(ButtonInTile, LargeButtonsOnlyWhenOffered)
{
    // x between 51.2 and 204.8; open y between 64 and 102.4, close y
    // between 153.6 and 192.
    EXPECT_EQ(buttonInTile(tile, 128, 80, false, false), noButton);
    EXPECT_EQ(buttonInTile(tile, 128, 80, true, false), buttonOpen);
    EXPECT_EQ(buttonInTile(tile, 128, 170, true, false), noButton);
    EXPECT_EQ(buttonInTile(tile, 128, 170, false, true), buttonClose);

    EXPECT_EQ(buttonInTile(tile, 52, 65, true, true), buttonOpen);
    EXPECT_EQ(buttonInTile(tile, 51, 80, true, true), noButton);
    EXPECT_EQ(buttonInTile(tile, 204, 102, true, true), buttonOpen);
    EXPECT_EQ(buttonInTile(tile, 205, 80, true, true), noButton);
    EXPECT_EQ(buttonInTile(tile, 128, 64, true, true), noButton);
    EXPECT_EQ(buttonInTile(tile, 128, 103, true, true), noButton);
    EXPECT_EQ(buttonInTile(tile, 128, 153, true, true), noButton);
    EXPECT_EQ(buttonInTile(tile, 128, 154, true, true), buttonClose);
    EXPECT_EQ(buttonInTile(tile, 128, 191, true, true), buttonClose);
    EXPECT_EQ(buttonInTile(tile, 128, 192, true, true), noButton);
}

TEST(ButtonInTile, TilesBelowThirtyTwoPixelsHaveNoButtons)
{
    for (int x = -1; x <= 32; ++x)
        for (int y = -1; y <= 32; ++y)
            ASSERT_EQ(buttonInTile(31, x, y, true, true), noButton) << x << "," << y;
    // 32 pixels: b = 4, the corner buttons exist.
    EXPECT_EQ(buttonInTile(32, 2, 30, false, false), buttonStartStop);
    EXPECT_EQ(buttonInTile(32, 30, 2, false, false), buttonPlanned);
    EXPECT_EQ(buttonInTile(32, 16, 10, true, false), buttonOpen);
}

} // namespace
} // namespace vx::liveview
