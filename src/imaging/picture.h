#pragma once
// A picture: width by height pixels of 8-bit channels (1 gray, 3 B G R,
// 4 B G R A), rows `stride` bytes apart. Copies share the pixels; a region
// is a view into the same pixels; copyOf makes pixels of its own.
#include <cstddef>
#include <cstdint>
#include <memory>

namespace vx::imaging {

struct PictureRect {
    int x = 0, y = 0, width = 0, height = 0;
};

// A colour in channel order: blue, green, red, alpha (gray takes the first).
struct PictureColour {
    double c0 = 0, c1 = 0, c2 = 0, c3 = 0;
    double operator[](int i) const { return i == 0 ? c0 : i == 1 ? c1 : i == 2 ? c2 : c3; }
};

struct Picture {
    int width = 0;
    int height = 0;
    int channels = 0;
    std::size_t stride = 0;
    std::uint8_t* data = nullptr;
    std::shared_ptr<void> owner;   // keeps the pixels alive

    bool empty() const { return data == nullptr || width <= 0 || height <= 0; }
    std::uint8_t* row(int y) const { return data + static_cast<std::size_t>(y) * stride; }
    std::uint8_t* at(int x, int y) const { return row(y) + static_cast<std::size_t>(x) * channels; }
    PictureRect bounds() const { return {0, 0, width, height}; }
};

// New pixels, not cleared.
Picture makePicture(int width, int height, int channels);

// The part `rect` of `picture`, over the same pixels; empty when `rect` is
// not wholly inside.
Picture region(const Picture& picture, const PictureRect& rect);

// The pixels copied into a picture of their own, rows packed.
Picture copyOf(const Picture& picture);

// The overlap of two rectangles (width and height 0 when none).
PictureRect intersection(const PictureRect& a, const PictureRect& b);

inline bool operator==(const PictureRect& a, const PictureRect& b)
{
    return a.x == b.x && a.y == b.y && a.width == b.width && a.height == b.height;
}

} // namespace vx::imaging
