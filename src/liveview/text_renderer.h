#pragma once
// Text on pictures: draws Windows-1251 text into a picture in place,
// with a shadow two pixels right and down.
#include <cstdint>
#include <string>

#include "imaging/picture.h"

namespace vx::liveview {

// Format flags, as the tile code passes them.
enum TextFormat : unsigned {
    textCenter = 1,      // centred across the target rectangle
    textRight = 2,
    textVCenter = 4,
    textBottom = 8,
    textWordBreak = 16,  // wrapped at the rectangle's right edge
    textSingleLine = 32,
};

// A colour in 0x00BBGGRR form.
using TextColour = std::uint32_t;

struct TextSize {
    int width = 0, height = 0;
};

// Draws `text` (Windows-1251, CR LF between lines) into a three-channel or
// four-channel (B, G, R, A) 8-bit picture in the font `fontName` of
// cell height `size` pixels, into the rectangle from `x`, `y` to the
// picture's lower right corner less one pixel: first in `shadowColour` two
// pixels right and down, then in `colour`. `sizeOut`, when given, gets the
// extent of the text as one line. Other pictures are left alone. Safe on any thread (on Linux once the GUI
// application exists; without one nothing is drawn).
void drawText(imaging::Picture& picture, const std::string& fontName, int size, const std::string& text, int x, int y,
              TextColour colour, TextColour shadowColour, unsigned format, TextSize* sizeOut = nullptr);

} // namespace vx::liveview
