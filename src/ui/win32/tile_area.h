#pragma once
// The tile area: control 1041 of the main dialog, subclassed for painting
// the live view's zone and for the mouse.
#include <windows.h>

#include <cstdint>
#include <functional>

#include "imaging/picture.h"

namespace vx::ui::win32 {

struct TileArea {
    HWND control = nullptr;
    imaging::Picture shown;      // four channels, what the control paints
    std::uint64_t serial = 0;    // of the zone shown; an older one never replaces it
    std::function<void(int x, int y)> onHover;
    std::function<void(int x, int y)> onClick;
};

// Subclasses `control` to paint `area` and report the mouse. False when the
// subclass can't be set.
bool attachTileArea(TileArea& area, HWND control);

// Shows a drawn zone (three channels) unless a newer one is already shown;
// the control takes the zone's size.
void showZone(TileArea& area, const imaging::Picture& zone, std::uint64_t serial);

} // namespace vx::ui::win32
