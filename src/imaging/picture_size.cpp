#include "imaging/picture_size.h"

namespace vx::imaging {

bool jpegSize(std::span<const std::uint8_t> bytes, int& width, int& height)
{
    const std::size_t n = bytes.size();
    if (n < 4 || bytes[0] != 0xFF || bytes[1] != 0xD8)
        return false;
    std::size_t at = 2;
    // Markers with a length until the first frame header; every read is
    // checked against the end, the bytes come from another process.
    while (at + 4 <= n) {
        if (bytes[at] != 0xFF)
            return false;
        const std::uint8_t marker = bytes[at + 1];
        if (marker == 0xFF) {   // fill byte
            ++at;
            continue;
        }
        if (marker == 0xD8 || marker == 0x01 || (marker >= 0xD0 && marker <= 0xD7)) {   // no length
            at += 2;
            continue;
        }
        if (marker == 0xD9 || marker == 0xDA)   // end, or scan data before any frame header
            return false;
        const std::size_t length = static_cast<std::size_t>(bytes[at + 2]) << 8 | bytes[at + 3];
        if (length < 2)
            return false;
        const bool frame = marker >= 0xC0 && marker <= 0xCF && marker != 0xC4 && marker != 0xC8 && marker != 0xCC;
        if (frame) {
            if (length < 7 || at + 9 > n)
                return false;
            height = bytes[at + 5] << 8 | bytes[at + 6];
            width = bytes[at + 7] << 8 | bytes[at + 8];
            return width > 0 && height > 0;
        }
        at += 2 + length;
    }
    return false;
}

int reductionFor(int width, int height, int minWidth, int minHeight)
{
    if (minWidth <= 0 || minHeight <= 0 || width <= 0 || height <= 0)
        return 1;
    int best = 1;
    for (int factor : {2, 4, 8}) {
        if ((width + factor - 1) / factor < minWidth || (height + factor - 1) / factor < minHeight)
            break;
        best = factor;
    }
    return best;
}

} // namespace vx::imaging
