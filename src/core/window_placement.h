#pragma once
// Where the main window goes at start, and what is remembered of it after
// the operator moved or resized it. Pure geometry: the window layer hands in
// the monitors' work areas.
#include <optional>
#include <vector>

namespace vx::core {

struct Rect {
    int x = 0, y = 0, width = 0, height = 0;
    bool contains(int px, int py) const { return px >= x && px < x + width && py >= y && py < y + height; }
    bool operator==(const Rect&) const = default;
};

struct Placement {
    int xWindow = -1, yWindow = -1, wWindow = -1, hWindow = -1, display = 0;
};

// The window's rectangle for the remembered placement, or nothing when the
// size isn't set (width or height below 1). `monitors` are the work areas in
// enumeration order; `current` is where the window stands now.
std::optional<Rect> placeWindow(const Placement& placement, const std::vector<Rect>& monitors,
                                const Rect& current);

// The placement to remember for a window at `frame`: its monitor is the
// index of the work area holding its centre (0 when none does).
Placement rememberPlacement(const Rect& frame, const std::vector<Rect>& monitors);

// The tile area's size for a client area: less the tile control's left
// offset on both sides, less the status bar and the offsets in height; at
// least 640 by 480; each side rounded down to a multiple of 4.
struct Size {
    int width = 0, height = 0;
    bool operator==(const Size&) const = default;
};
Size tileZoneForClient(int clientWidth, int clientHeight, int statusBarHeight, int tileLeft, int tileTop);

// Tells an operator's move or resize from the window's own: the first show
// and our own placement move the window too, and none of that may rewrite
// the main config. The window layer restarts a short quiet timer on every
// move or resize event and on the first show; when the timer runs out it
// asks settleGeometry whether the geometry is to be remembered.
struct GeometryWatch {
    bool settled = false;   // the placement at start has come to rest
    Rect rest;              // where the window stood when it last came to rest
};

// The window places itself: what moves it until the next quiet period is ours.
void notePlacement(GeometryWatch& watch);
// The quiet period ran out with the window's frame at `frame` (in its
// normal state). The first rest after a placement only records where the
// window stands; a later one that finds the window elsewhere is the end of
// an operator's move or resize: true, and that is the new rest.
bool settleGeometry(GeometryWatch& watch, const Rect& frame);

} // namespace vx::core
