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

} // namespace vx::core
