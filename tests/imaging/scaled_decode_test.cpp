// Pictures decoded no larger than their place on the screen: the JPEG
// header read before decoding, the reduction chosen for a tile, and what the
// scaled decode gives back.
#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

#include "imaging/picture_ops.h"
#include "imaging/picture_size.h"

namespace vx::imaging {
namespace {

// A 320 by 240 picture: left half blue, right half red.
std::vector<std::uint8_t> halvesJpeg()
{
    Picture p = makePicture(320, 240, 3);
    fill(p, {255, 0, 0, 0});
    Picture right = region(p, {160, 0, 160, 240});
    fill(right, {0, 0, 255, 0});
    return encodeJpeg(p, 90);
}

TEST(ScaledDecode, HeaderSizeAndReduction)
{
    const std::vector<std::uint8_t> jpeg = halvesJpeg();
    int width = 0, height = 0;
    ASSERT_TRUE(jpegSize(jpeg, width, height));
    EXPECT_EQ(width, 320);
    EXPECT_EQ(height, 240);
    // Cut anywhere before the frame header, or no JPEG at all: no size.
    for (std::size_t n : {std::size_t{0}, std::size_t{3}, std::size_t{20}})
        EXPECT_FALSE(jpegSize(std::span(jpeg).first(n), width, height)) << n;
    const std::vector<std::uint8_t> png{0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n', 0, 0, 0, 13};
    EXPECT_FALSE(jpegSize(png, width, height));
    // A length that points past the end is no size either.
    const std::vector<std::uint8_t> runaway{0xFF, 0xD8, 0xFF, 0xE0, 0xFF, 0xFF, 0, 0};
    EXPECT_FALSE(jpegSize(runaway, width, height));

    EXPECT_EQ(reductionFor(320, 320, 120, 120), 2);   // 160 covers 120, 80 doesn't
    EXPECT_EQ(reductionFor(320, 320, 40, 40), 8);
    EXPECT_EQ(reductionFor(320, 320, 241, 241), 1);
    EXPECT_EQ(reductionFor(320, 240, 120, 120), 2);   // the shorter side decides
    EXPECT_EQ(reductionFor(321, 321, 41, 41), 8);     // sides round up: 41
}

TEST(ScaledDecode, GivesAtLeastTheTileAndTheSameColours)
{
    const std::vector<std::uint8_t> jpeg = halvesJpeg();
    const Picture whole = decodePictureFor(jpeg, 0, 0);
    ASSERT_EQ(whole.width, 320);
    const Picture half = decodePictureFor(jpeg, 120, 120);
    EXPECT_GE(half.width, 160);   // a decoder without scaling gives the whole picture
    EXPECT_GE(half.height, 120);
    ASSERT_EQ(half.channels, 3);
    const Picture bigger = decodePictureFor(jpeg, 300, 300);
    EXPECT_EQ(bigger.width, 320);
    // The halves keep their colours at any scale.
    for (const Picture* p : {&whole, &half}) {
        EXPECT_GT(p->at(p->width / 4, p->height / 2)[0], 230);
        EXPECT_GT(p->at(p->width * 3 / 4, p->height / 2)[2], 230);
    }
    EXPECT_TRUE(decodePictureFor({}, 120, 120).empty());

    // The tile's picture: stretched to the square, four channels, opaque.
    const Picture tile = tilePicture(half, 100);
    ASSERT_EQ(tile.width, 100);
    ASSERT_EQ(tile.channels, 4);
    EXPECT_EQ(tile.at(10, 50)[3], 255);
    EXPECT_GT(tile.at(10, 50)[0], 230);
    EXPECT_TRUE(tilePicture(Picture(), 100).empty());
}

} // namespace
} // namespace vx::imaging
