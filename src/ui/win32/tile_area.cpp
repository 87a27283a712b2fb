#include "ui/win32/tile_area.h"

#include <commctrl.h>

#include "imaging/picture_ops.h"

namespace vx::ui::win32 {

namespace {

constexpr UINT_PTR subclassId = 1041;

void paint(TileArea& area)
{
    PAINTSTRUCT ps;
    HDC dc = ::BeginPaint(area.control, &ps);
    RECT client;
    ::GetClientRect(area.control, &client);
    const imaging::Picture& p = area.shown;
    if (p.empty()) {
        ::FillRect(dc, &client, static_cast<HBRUSH>(::GetStockObject(GRAY_BRUSH)));
    } else {
        BITMAPINFO info{};
        info.bmiHeader.biSize = sizeof info.bmiHeader;
        info.bmiHeader.biWidth = p.width;
        info.bmiHeader.biHeight = -p.height;   // top-down rows
        info.bmiHeader.biPlanes = 1;
        info.bmiHeader.biBitCount = 32;
        info.bmiHeader.biCompression = BI_RGB;
        ::SetDIBitsToDevice(dc, 0, 0, static_cast<DWORD>(p.width), static_cast<DWORD>(p.height), 0, 0, 0,
                            static_cast<UINT>(p.height), p.data, &info, DIB_RGB_COLORS);
    }
    ::EndPaint(area.control, &ps);
}

LRESULT CALLBACK tileProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR, DWORD_PTR data)
{
    TileArea& area = *reinterpret_cast<TileArea*>(data);
    switch (message) {
    case WM_PAINT:
        paint(area);
        return 0;
    case WM_ERASEBKGND:
        return 1;
    case WM_MOUSEMOVE:
        if (area.onHover)
            area.onHover(static_cast<short>(LOWORD(lParam)), static_cast<short>(HIWORD(lParam)));
        return 0;
    case WM_LBUTTONDOWN:
        if (area.onClick)
            area.onClick(static_cast<short>(LOWORD(lParam)), static_cast<short>(HIWORD(lParam)));
        return 0;
    case WM_NCDESTROY:
        ::RemoveWindowSubclass(window, tileProcedure, subclassId);
        break;
    default:
        break;
    }
    return ::DefSubclassProc(window, message, wParam, lParam);
}

} // namespace

bool attachTileArea(TileArea& area, HWND control)
{
    area.control = control;
    // A static control draws its own black frame: the zone is painted instead.
    ::SetWindowLongPtrW(control, GWL_STYLE, (::GetWindowLongPtrW(control, GWL_STYLE) & ~SS_TYPEMASK) | SS_NOTIFY);
    return control && ::SetWindowSubclass(control, tileProcedure, subclassId, reinterpret_cast<DWORD_PTR>(&area));
}

void showZone(TileArea& area, const imaging::Picture& zone, std::uint64_t serial)
{
    if (!area.control || zone.empty() || serial < area.serial)
        return;
    area.serial = serial;
    imaging::Picture shown = imaging::makePicture(zone.width, zone.height, 4);
    imaging::convertInto(zone, shown);
    area.shown = shown;
    RECT r;
    ::GetClientRect(area.control, &r);
    if (r.right != zone.width || r.bottom != zone.height)
        ::SetWindowPos(area.control, nullptr, 0, 0, zone.width, zone.height, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    ::InvalidateRect(area.control, nullptr, FALSE);
}

} // namespace vx::ui::win32
