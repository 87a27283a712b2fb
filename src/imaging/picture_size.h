#pragma once
// What a compressed picture's header tells before any decoding, and how far
// a decoder may cut a picture down for a given place on the screen.
#include <cstdint>
#include <span>

namespace vx::imaging {

// The width and height of a JPEG's frame header; false when the bytes are
// no JPEG or end before the frame header.
bool jpegSize(std::span<const std::uint8_t> bytes, int& width, int& height);

// The largest of 1, 2, 4 and 8 by which a width by height picture can be cut
// down (each side rounded up, as the decoders' DCT scaling does) and still
// be at least minWidth by minHeight. 1 for a minimum of 0 or less.
int reductionFor(int width, int height, int minWidth, int minHeight);

} // namespace vx::imaging
