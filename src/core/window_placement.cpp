#include "core/window_placement.h"

#include <algorithm>
#include <cstdlib>

namespace vx::core {

namespace {

// The monitor nearest to a rectangle: the one holding its centre, else the
// one whose centre lies closest.
int nearestMonitor(const Rect& r, const std::vector<Rect>& monitors)
{
    const int cx = r.x + r.width / 2, cy = r.y + r.height / 2;
    int best = 0;
    long bestDistance = -1;
    for (size_t i = 0; i < monitors.size(); ++i) {
        const Rect& m = monitors[i];
        if (m.contains(cx, cy))
            return static_cast<int>(i);
        const long dx = (m.x + m.width / 2) - cx, dy = (m.y + m.height / 2) - cy;
        const long d = dx * dx + dy * dy;
        if (bestDistance < 0 || d < bestDistance) {
            bestDistance = d;
            best = static_cast<int>(i);
        }
    }
    return best;
}

} // namespace

std::optional<Rect> placeWindow(const Placement& p, const std::vector<Rect>& monitors, const Rect& current)
{
    if (p.wWindow < 1 || p.hWindow < 1)
        return std::nullopt;
    if (monitors.empty())
        return Rect{p.xWindow, p.yWindow, p.wWindow, p.hWindow};
    const bool validDisplay = p.display >= 0 && p.display < static_cast<int>(monitors.size());
    int index = -1;
    if (validDisplay) {
        index = p.display;
    } else if (p.xWindow >= 0 && p.yWindow >= 0) {
        for (size_t i = 0; i < monitors.size(); ++i)
            if (monitors[i].contains(p.xWindow, p.yWindow))
                index = static_cast<int>(i);
        if (index < 0)
            index = nearestMonitor(Rect{p.xWindow, p.yWindow, 1, 1}, monitors);
    } else {
        index = nearestMonitor(current, monitors);
    }
    const Rect& work = monitors[index];
    Rect r{p.xWindow, p.yWindow, p.wWindow, p.hWindow};
    if (p.xWindow < 0)
        r.x = work.x + (work.width - r.width) / 2;
    if (p.yWindow < 0)
        r.y = work.y + (work.height - r.height) / 2;
    if (validDisplay && p.xWindow >= 0 && p.yWindow >= 0) {
        if (r.x + r.width <= work.x)
            r.x = work.x;
        else if (r.x >= work.x + work.width)
            r.x = work.x + work.width - r.width;
        if (r.y + r.height <= work.y)
            r.y = work.y;
        else if (r.y >= work.y + work.height)
            r.y = work.y + work.height - r.height;
    }
    return r;
}

Placement rememberPlacement(const Rect& frame, const std::vector<Rect>& monitors)
{
    Placement p{frame.x, frame.y, frame.width, frame.height, 0};
    const int cx = frame.x + frame.width / 2, cy = frame.y + frame.height / 2;
    for (size_t i = 0; i < monitors.size(); ++i)
        if (monitors[i].contains(cx, cy)) {
            p.display = static_cast<int>(i);
            break;
        }
    return p;
}

Size tileZoneForClient(int clientWidth, int clientHeight, int statusBarHeight, int tileLeft, int tileTop)
{
    int w = std::max(clientWidth - 2 * tileLeft, 640);
    int h = std::max(clientHeight - statusBarHeight - tileTop - tileLeft, 480);
    return Size{w - w % 4, h - h % 4};
}

void notePlacement(GeometryWatch& watch)
{
    watch.settled = false;
}

bool settleGeometry(GeometryWatch& watch, const Rect& frame)
{
    if (!watch.settled) {
        watch.settled = true;
        watch.rest = frame;
        return false;
    }
    if (frame == watch.rest)
        return false;
    watch.rest = frame;
    return true;
}

} // namespace vx::core
