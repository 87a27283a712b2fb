// Text on pictures through GDI: the picture is copied into a DIB section,
// the text drawn there (shadow first) and the colour channels copied back.
#include "liveview/text_renderer.h"

#include <windows.h>

#include <cstring>
#include <string>

namespace vx::liveview {

namespace {

std::wstring widenedFontName(const std::string& name)
{
    std::wstring out;
    for (unsigned char c : name)
        out.push_back(static_cast<wchar_t>(c));
    return out;
}

std::wstring textFrom1251(const std::string& text)
{
    if (text.empty())
        return std::wstring();
    const int length = MultiByteToWideChar(1251, 0, text.data(), static_cast<int>(text.size()), nullptr, 0);
    std::wstring out(static_cast<std::size_t>(length), L'\0');
    MultiByteToWideChar(1251, 0, text.data(), static_cast<int>(text.size()), out.data(), length);
    return out;
}

// The tile code's flags are the DrawTextW flags of the same meaning.
static_assert(textCenter == DT_CENTER && textRight == DT_RIGHT && textVCenter == DT_VCENTER &&
              textBottom == DT_BOTTOM && textWordBreak == DT_WORDBREAK && textSingleLine == DT_SINGLELINE);

} // namespace

void drawText(imaging::Picture& picture, const std::string& fontName, int size, const std::string& text, int x, int y,
              TextColour colour, TextColour shadowColour, unsigned format, TextSize* sizeOut)
{
    if (picture.empty() || (picture.channels != 3 && picture.channels != 4) || size <= 0)
        return;
    const std::wstring wide = textFrom1251(text);
    HFONT font = CreateFontW(size, 0, 0, 0, FW_NORMAL, FALSE, FALSE, FALSE, RUSSIAN_CHARSET, OUT_DEFAULT_PRECIS,
                             CLIP_DEFAULT_PRECIS, DEFAULT_QUALITY, DEFAULT_PITCH | FF_SWISS,
                             widenedFontName(fontName).c_str());
    if (!font)
        return;
    HDC dc = CreateCompatibleDC(nullptr);
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof(BITMAPINFOHEADER);
    info.bmiHeader.biWidth = picture.width;
    info.bmiHeader.biHeight = -picture.height;   // top-down rows
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    info.bmiHeader.biCompression = BI_RGB;
    void* bits = nullptr;
    HBITMAP bitmap = dc ? CreateDIBSection(dc, &info, DIB_RGB_COLORS, &bits, nullptr, 0) : nullptr;
    if (!bitmap || !bits) {
        if (dc)
            DeleteDC(dc);
        DeleteObject(font);
        return;
    }
    auto* dib = static_cast<std::uint8_t*>(bits);
    const std::size_t dibStride = static_cast<std::size_t>(picture.width) * 4;
    for (int row = 0; row < picture.height; ++row)
        for (int col = 0; col < picture.width; ++col) {
            std::memcpy(dib + row * dibStride + static_cast<std::size_t>(col) * 4, picture.at(col, row), 3);
            dib[row * dibStride + static_cast<std::size_t>(col) * 4 + 3] = 0;
        }
    HGDIOBJ oldBitmap = SelectObject(dc, bitmap);
    HGDIOBJ oldFont = SelectObject(dc, font);
    SetBkMode(dc, TRANSPARENT);
    RECT target{x, y, picture.width - 1, picture.height - 1};
    SIZE extent{};
    if (GetTextExtentPoint32W(dc, wide.c_str(), static_cast<int>(wide.size()), &extent) && sizeOut) {
        sizeOut->width = extent.cx;
        sizeOut->height = extent.cy;
    }
    RECT shadow{target.left + 2, target.top + 2, target.right + 2, target.bottom + 2};
    SetTextColor(dc, shadowColour);
    DrawTextW(dc, wide.c_str(), static_cast<int>(wide.size()), &shadow, format);
    SetTextColor(dc, colour);
    DrawTextW(dc, wide.c_str(), static_cast<int>(wide.size()), &target, format);
    GdiFlush();
    for (int row = 0; row < picture.height; ++row)
        for (int col = 0; col < picture.width; ++col)
            std::memcpy(picture.at(col, row), dib + row * dibStride + static_cast<std::size_t>(col) * 4, 3);
    SelectObject(dc, oldFont);
    SelectObject(dc, oldBitmap);
    DeleteObject(font);
    DeleteObject(bitmap);
    DeleteDC(dc);
}

} // namespace vx::liveview
