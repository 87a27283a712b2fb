#include "imaging/picture.h"

#include <algorithm>
#include <cstring>
#include <new>

namespace vx::imaging {

Picture makePicture(int width, int height, int channels)
{
    Picture p;
    if (width <= 0 || height <= 0 || channels <= 0)
        return p;
    p.width = width;
    p.height = height;
    p.channels = channels;
    p.stride = static_cast<std::size_t>(width) * static_cast<std::size_t>(channels);
    // Rows start on 64-byte boundaries from the first: drawing code with
    // vector paths gives the same pixels wherever the picture was made.
    constexpr std::align_val_t alignment{64};
    auto* pixels = new (alignment) std::uint8_t[p.stride * static_cast<std::size_t>(height)];
    p.data = pixels;
    p.owner = std::shared_ptr<std::uint8_t>(pixels, [](std::uint8_t* d) { ::operator delete[](d, alignment); });
    return p;
}

PictureRect intersection(const PictureRect& a, const PictureRect& b)
{
    const int x0 = std::max(a.x, b.x), y0 = std::max(a.y, b.y);
    const int x1 = std::min(a.x + a.width, b.x + b.width), y1 = std::min(a.y + a.height, b.y + b.height);
    if (x1 <= x0 || y1 <= y0)
        return {};
    return {x0, y0, x1 - x0, y1 - y0};
}

Picture region(const Picture& picture, const PictureRect& rect)
{
    if (picture.empty() || rect.width <= 0 || rect.height <= 0 || intersection(rect, picture.bounds()) != rect)
        return Picture();
    Picture view = picture;
    view.data = picture.at(rect.x, rect.y);
    view.width = rect.width;
    view.height = rect.height;
    return view;
}

Picture copyOf(const Picture& picture)
{
    if (picture.empty())
        return Picture();
    Picture out = makePicture(picture.width, picture.height, picture.channels);
    for (int y = 0; y < picture.height; ++y)
        std::memcpy(out.row(y), picture.row(y), out.stride);
    return out;
}

} // namespace vx::imaging
