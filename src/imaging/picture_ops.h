#pragma once
// What the live view and the stream's picture channel do with pictures.
// Each platform's backend (posix/, win32/) carries them out.
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <span>
#include <vector>

#include "imaging/picture.h"

namespace vx::imaging {

// A JPEG or PNG (or anything else the platform reads) as three channels;
// empty when the bytes are no picture.
Picture decodePicture(std::span<const std::uint8_t> bytes);

// As decodePicture, for a picture shown no larger than width by height: a
// JPEG comes out at a half, a quarter or an eighth of its size (the
// decoder's DCT scaling, far cheaper than a whole decode) when that still
// gives at least width by height pixels. Other pictures, a size of 0, and a
// platform decoder without scaling give the whole picture.
Picture decodePictureFor(std::span<const std::uint8_t> bytes, int width, int height);

// `source` stretched to side by side (bilinear) in four channels: the
// picture a tile of that side starts from. Empty for an empty source.
Picture tilePicture(const Picture& source, int side);

// The picture as a JPEG file's bytes at `quality` (1..100); pictures of
// one or four channels are taken as three. Empty when it can't be encoded.
std::vector<std::uint8_t> encodeJpeg(const Picture& picture, int quality);

// A picture file with its channels as they are (a PNG's alpha kept), in
// eight bits; empty when it can't be read.
Picture readPictureFile(const std::filesystem::path& file);

// `source` stretched to width by height, bilinear; same channels.
Picture scaled(const Picture& source, int width, int height);

// `source` (1, 3 or 4 channels) converted into `target`'s channels (3 or 4),
// written into target's own pixels; both of one size. Alpha comes out 255.
void convertInto(const Picture& source, Picture& target);

// Every pixel set to `colour`.
void fill(Picture& picture, const PictureColour& colour);

// A rectangle's outline, `thickness` pixels wide, centred on its edges.
void drawRectangle(Picture& picture, const PictureRect& rect, const PictureColour& colour, int thickness);

// A line from x0, y0 to x1, y1 (both ends included), `thickness` wide.
void drawLine(Picture& picture, int x0, int y0, int x1, int y1, const PictureColour& colour, int thickness);

// Every channel multiplied by `factor`, saturated to 0..255.
void multiply(Picture& picture, double factor);

// target = target + source, per channel, saturated; both of one shape.
void addInto(Picture& target, const Picture& source);

// target = target * targetWeight + source * sourceWeight, rounded and
// saturated; both of one shape.
void blendInto(Picture& target, double targetWeight, const Picture& source, double sourceWeight);

} // namespace vx::imaging
