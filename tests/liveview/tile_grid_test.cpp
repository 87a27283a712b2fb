#include <gtest/gtest.h>

#include "liveview/tile_grid.h"

namespace vx::liveview {
namespace {

// Rows grow from two until the places (streams and the add tile) fit.
// 1920 by 1040 with 17 places: r = 2: gap 26, tile 480, columns 3 -> 6;
// r = 3: gap 17, tile 324, columns 5 -> 15; r = 4: gap 13, tile 240,
// columns 7 -> 28. (-1: not looked at.)
TEST(TileLayout, RowsGrowUntilTheTilesFit)
{
    struct Case {
        int width, height, streams;
        int gap, tile, columns, rows, gapX, gapY;
    };
    const Case cases[] = {
        {640, 480, 0, 12, 220, 2, 2, 66, 13},
        {4000, 480, 1, -1, 220, -1, 2, -1, -1},   // one stream on a wide zone: still two rows
        {1920, 1040, 16, 13, 240, 7, 4, 30, 16},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.width);
        const TileLayout l = computeTileLayout(c.width, c.height, c.streams);
        const int got[] = {l.gap, l.tile, l.columns, l.rows, l.gapX, l.gapY};
        const int wanted[] = {c.gap, c.tile, c.columns, c.rows, c.gapX, c.gapY};
        for (int i = 0; i < 6; ++i)
            if (wanted[i] >= 0)
                EXPECT_EQ(got[i], wanted[i]) << i;
    }
    TileGrid grid;
    layoutTiles(grid, 640, 480, 0);
    EXPECT_EQ(grid.tileSize, 220);
    EXPECT_TRUE(grid.tileRects.empty());
    EXPECT_EQ(grid.addTileRect, (TileRect{66, 13, 220, 220}));
    EXPECT_EQ(grid.requestWidth, 320);
    EXPECT_EQ(grid.requestHeight, 320);
}

TEST(TileLayout, HundredStreamsPutTheAddTileBehindTheGrid)
{
    TileGrid grid;
    const TileLayout layout = layoutTiles(grid, 1920, 1040, 100);
    // The grid is sized for 100 places, the add tile takes the 101st.
    EXPECT_GE(layout.columns * layout.rows, 100);
    ASSERT_EQ(grid.tileRects.size(), 100u);
    EXPECT_EQ(grid.addTileRect, tilePosition(layout, 100));
    EXPECT_EQ(computeTileLayout(1920, 1040, 99).rows, layout.rows);
}

TEST(TileLayout, AZoneNarrowerThanOneTileRunsToTheRowLimit)
{
    // No column ever fits: 50 rows, with tile and columns of 49 rows.
    const TileLayout layout = computeTileLayout(1, 480, 3);
    EXPECT_EQ(layout.rows, 50);
    EXPECT_EQ(layout.columns, 0);
    EXPECT_EQ(layout.gap, 0);
    EXPECT_EQ(layout.tile, 8);    // 480 / 49 = 9, down to a multiple of 4
    EXPECT_EQ(layout.gapX, 1);
    // Every place falls into the single column there is.
    EXPECT_EQ(tilePosition(layout, 5).x, layout.gapX);
}

// No tile is hit before the first layout, nor on a zone of no height.
TEST(TileAt, NothingWithoutALayout)
{
    TileGrid grid;
    grid.tileRects.push_back({0, 0, 100, 100});
    EXPECT_EQ(tileAt(grid, 10, 10), noTile);
    layoutTiles(grid, 640, 0, 2);
    EXPECT_EQ(grid.tileSize, 0);
    EXPECT_EQ(tileAt(grid, 0, 0), noTile);
}

TEST(TileAt, LeftAndTopEdgesInsideRightAndBottomOutside)
{
    TileGrid grid;
    layoutTiles(grid, 640, 480, 2);   // three places on 2 by 2
    const TileRect first = grid.tileRects[0];
    const TileRect second = grid.tileRects[1];
    const TileRect add = grid.addTileRect;
    ASSERT_EQ(first, (TileRect{66, 13, 220, 220}));
    ASSERT_EQ(second, (TileRect{352, 13, 220, 220}));
    ASSERT_EQ(add, (TileRect{66, 246, 220, 220}));

    for (int i = 0; i < 2; ++i) {
        const TileRect r = grid.tileRects[static_cast<std::size_t>(i)];
        SCOPED_TRACE(i);
        EXPECT_EQ(tileAt(grid, r.x, r.y), i);
        EXPECT_EQ(tileAt(grid, r.x - 1, r.y), noTile);
        EXPECT_EQ(tileAt(grid, r.x, r.y - 1), noTile);
        EXPECT_EQ(tileAt(grid, r.x + r.width - 1, r.y + r.height - 1), i);
        EXPECT_EQ(tileAt(grid, r.x + r.width, r.y + 10), noTile);
        EXPECT_EQ(tileAt(grid, r.x + 10, r.y + r.height), noTile);
    }
    EXPECT_EQ(tileAt(grid, add.x, add.y), addTile);
    EXPECT_EQ(tileAt(grid, add.x + add.width - 1, add.y + add.height - 1), addTile);
    EXPECT_EQ(tileAt(grid, add.x + add.width, add.y), noTile);
    EXPECT_EQ(tileAt(grid, add.x, add.y + add.height), noTile);
    EXPECT_EQ(tileAt(grid, add.x - 1, add.y), noTile);
    EXPECT_EQ(tileAt(grid, -1, -1), noTile);
    // The add tile is tested first.
    grid.tileRects[0] = grid.addTileRect;
    EXPECT_EQ(tileAt(grid, add.x, add.y), addTile);
}

} // namespace
} // namespace vx::liveview
