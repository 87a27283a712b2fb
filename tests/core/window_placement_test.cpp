#include <gtest/gtest.h>

#include "core/window_placement.h"

using namespace vx::core;

namespace {
const std::vector<Rect> twoMonitors{{0, 0, 1920, 1040}, {1920, 0, 1280, 1000}};
}

// Nothing without a size; negative coordinates centre on the monitor.
TEST(WindowPlacement, NothingWithoutASizeAndNegativeCoordinatesCentre)
{
    EXPECT_FALSE(placeWindow({-1, -1, -1, -1, 0}, twoMonitors, {}));
    EXPECT_FALSE(placeWindow({10, 10, 0, 500, 0}, twoMonitors, {}));
    EXPECT_EQ(*placeWindow({-1, -1, 1000, 600, 1}, twoMonitors, {}), (Rect{2060, 200, 1000, 600}));
    EXPECT_EQ(*placeWindow({-1, 50, 1000, 600, 0}, twoMonitors, {}), (Rect{460, 50, 1000, 600}));
}

TEST(WindowPlacement, WindowWhollyOutsideIsPulledBackOnAValidDisplay)
{
    // Right of the first monitor's work area: ends at its right edge.
    EXPECT_EQ(*placeWindow({5000, 100, 800, 600, 0}, twoMonitors, {}), (Rect{1120, 100, 800, 600}));
    // Above and left of the second one.
    EXPECT_EQ(*placeWindow({100, 2000, 800, 600, 1}, twoMonitors, {}), (Rect{1920, 400, 800, 600}));
    // Partly inside stays where it is.
    EXPECT_EQ(*placeWindow({1800, 100, 800, 600, 0}, twoMonitors, {}), (Rect{1800, 100, 800, 600}));
    // Without a valid display nothing is pulled back.
    EXPECT_EQ(*placeWindow({5000, 100, 800, 600, 7}, twoMonitors, {}), (Rect{5000, 100, 800, 600}));
}

TEST(WindowPlacement, RememberedMonitorIsTheOneHoldingTheWindow)
{
    EXPECT_EQ(rememberPlacement({2000, 10, 600, 400}, twoMonitors).display, 1);
    EXPECT_EQ(rememberPlacement({-5000, 10, 600, 400}, twoMonitors).display, 0);
    const Placement p = rememberPlacement({10, 20, 300, 400}, twoMonitors);
    EXPECT_EQ(p.xWindow, 10);
    EXPECT_EQ(p.yWindow, 20);
    EXPECT_EQ(p.wWindow, 300);
    EXPECT_EQ(p.hWindow, 400);
}

TEST(TileZone, ClientLessMarginsAtLeastTheMinimumInStepsOfFour)
{
    EXPECT_EQ(tileZoneForClient(1000, 800, 22, 10, 90), (Size{980, 676}));
    EXPECT_EQ(tileZoneForClient(1003, 805, 22, 10, 90), (Size{980, 680}));
    EXPECT_EQ(tileZoneForClient(300, 200, 22, 10, 90), (Size{640, 480}));
}
