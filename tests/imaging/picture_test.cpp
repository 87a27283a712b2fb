#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "imaging/picture_ops.h"

namespace vx::imaging {
namespace {

std::string dataFile(const char* name)
{
    return std::string(VEXLANE_SOURCE_DIR) + "/tests/imaging/data/" + name;
}

std::vector<std::uint8_t> fileBytes(const char* name)
{
    std::ifstream in(dataFile(name), std::ios::binary);
    return std::vector<std::uint8_t>(std::istreambuf_iterator<char>(in), {});
}

std::vector<int> pixel(const Picture& p, int x, int y)
{
    return std::vector<int>(p.at(x, y), p.at(x, y) + p.channels);
}

Picture plain(int width, int height, int channels, const PictureColour& colour)
{
    Picture p = makePicture(width, height, channels);
    fill(p, colour);
    return p;
}

void expectNear(const std::vector<int>& got, const std::vector<int>& want, int tolerance)
{
    ASSERT_EQ(got.size(), want.size());
    for (std::size_t i = 0; i < got.size(); ++i)
        EXPECT_NEAR(got[i], want[i], tolerance) << "channel " << i;
}

TEST(PictureFiles, DecodeAndReadKeepWhatTheFilesHold)
{
    const std::vector<std::uint8_t> jpeg = fileBytes("solid.jpg");
    ASSERT_FALSE(jpeg.empty());
    const Picture decoded = decodePicture(jpeg);
    ASSERT_FALSE(decoded.empty());
    EXPECT_EQ(decoded.width, 16);
    EXPECT_EQ(decoded.height, 8);
    EXPECT_EQ(decoded.channels, 3);
    expectNear(pixel(decoded, 15, 7), {10, 200, 30}, 4);

    // Bytes are decoded as three channels whatever the file holds.
    const Picture png = decodePicture(fileBytes("alpha.png"));
    ASSERT_EQ(png.channels, 3);

    const Picture alpha = readPictureFile(dataFile("alpha.png"));
    ASSERT_EQ(alpha.channels, 4);
    expectNear(pixel(alpha, 3, 1), {0, 0, 255, 128}, 1);
    const Picture gray = readPictureFile(dataFile("gray.png"));
    ASSERT_EQ(gray.channels, 1);
    EXPECT_EQ(pixel(gray, 2, 2), std::vector<int>{90});
}

TEST(PictureFiles, WhatIsNoPictureGivesAnEmptyOne)
{
    std::vector<std::uint8_t> cut = fileBytes("solid.jpg");
    cut.resize(20);
    EXPECT_TRUE(decodePicture({}).empty());
    EXPECT_TRUE(decodePicture(cut).empty());
    EXPECT_TRUE(readPictureFile(dataFile("missing.png")).empty());
}

TEST(PictureRecord, CopiesAndRegionsShareThePixelsCopyOfDoesNot)
{
    Picture p = plain(6, 4, 3, {1, 2, 3});
    const Picture same = p;
    Picture part = region(p, {2, 1, 3, 2});
    ASSERT_FALSE(part.empty());
    const Picture own = copyOf(p);
    fill(part, {9, 9, 9});
    EXPECT_EQ(pixel(same, 2, 1), (std::vector<int>{9, 9, 9}));
    EXPECT_EQ(pixel(same, 5, 2), (std::vector<int>{1, 2, 3}));
    EXPECT_EQ(pixel(own, 2, 1), (std::vector<int>{1, 2, 3}));
    EXPECT_TRUE(region(p, {4, 0, 3, 1}).empty());   // not wholly inside
}

TEST(PictureOps, ScaleIsBilinearWithCentredPixels)
{
    Picture row = makePicture(2, 1, 1);
    row.data[0] = 0;
    row.data[1] = 200;
    const Picture wide = scaled(row, 4, 1);
    ASSERT_EQ(wide.width, 4);
    EXPECT_EQ((std::vector<int>{wide.data[0], wide.data[1], wide.data[2], wide.data[3]}),
              (std::vector<int>{0, 50, 150, 200}));
    const Picture square = scaled(plain(7, 3, 4, {5, 6, 7, 8}), 20, 20);
    ASSERT_EQ(square.channels, 4);
    EXPECT_EQ(pixel(square, 19, 19), (std::vector<int>{5, 6, 7, 8}));
    EXPECT_TRUE(scaled(row, 0, 4).empty());
}

TEST(PictureOps, ConvertBetweenGrayBgrAndBgra)
{
    struct Case {
        int from, to;
        PictureColour colour;
        std::vector<int> want;
    };
    const Case cases[] = {
        {1, 4, {77}, {77, 77, 77, 255}},
        {3, 4, {1, 2, 3}, {1, 2, 3, 255}},
        {4, 3, {1, 2, 3, 4}, {1, 2, 3}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.from * 10 + c.to);
        Picture target = plain(3, 2, c.to, {0, 0, 0, 0});
        convertInto(plain(3, 2, c.from, c.colour), target);
        EXPECT_EQ(pixel(target, 2, 1), c.want);
    }
}

TEST(PictureOps, OutlinesAndLines)
{
    Picture p = plain(5, 5, 3, {0, 0, 0});
    drawRectangle(p, {0, 0, 5, 5}, {9, 9, 9}, 1);
    for (int i = 0; i < 5; ++i) {
        EXPECT_EQ(pixel(p, i, 0)[0], 9);
        EXPECT_EQ(pixel(p, 4, i)[0], 9);
    }
    EXPECT_EQ(pixel(p, 1, 1)[0], 0);
    drawLine(p, 1, 2, 3, 2, {7, 7, 7}, 1);
    EXPECT_EQ(pixel(p, 1, 2)[0], 7);
    EXPECT_EQ(pixel(p, 2, 1)[0], 0);
}

TEST(PictureOps, BlendsSaturateAndRound)
{
    Picture a = plain(2, 2, 4, {100, 200, 0, 255});
    addInto(a, plain(2, 2, 4, {100, 100, 5, 0}));
    EXPECT_EQ(pixel(a, 1, 1), (std::vector<int>{200, 255, 5, 255}));
    Picture b = plain(2, 2, 3, {100, 10, 255});
    blendInto(b, 0.3, plain(2, 2, 3, {200, 15, 255}), 0.7);
    EXPECT_EQ(pixel(b, 0, 1), (std::vector<int>{170, 14, 255}));
    Picture c = plain(2, 2, 3, {100, 200, 0});
    multiply(c, 2.0);
    EXPECT_EQ(pixel(c, 1, 0), (std::vector<int>{200, 255, 0}));
    Picture d = plain(2, 2, 3, {1, 1, 1});
    addInto(d, plain(3, 2, 3, {1, 1, 1}));   // of another shape: left alone
    EXPECT_EQ(pixel(d, 0, 0), (std::vector<int>{1, 1, 1}));
}

// Left half red, right half blue, a detailed band at the bottom.
Picture twoHalves(int width, int height, int channels)
{
    Picture p = plain(width, height, channels, {0, 0, 220, 255});
    Picture right = region(p, {width / 2, 0, width - width / 2, height});
    fill(right, {200, 40, 0, 255});
    for (int x = 0; x < width; x += 2)
        drawLine(p, x, height - 8, x, height - 1, {255, 255, 255, 255}, 1);
    return p;
}

TEST(PictureJpeg, EncodedPictureDecodesToItsSizeAndColours)
{
    // A region: its rows lie further apart than its own width.
    const Picture whole = twoHalves(100, 60, 3);
    const Picture part = region(whole, {10, 0, 80, 60});
    const std::vector<std::uint8_t> jpeg = encodeJpeg(part, 85);
    const Picture back = decodePicture(jpeg);
    ASSERT_EQ(std::pair(back.width, back.height), std::pair(80, 60));
    // Wine's encoder works at a quality of its own, a little coarser.
    expectNear(pixel(back, 5, 10), {0, 0, 220}, 24);
    expectNear(pixel(back, 75, 10), {200, 40, 0}, 24);

    const Picture withAlpha = twoHalves(32, 16, 4);
    const Picture fromAlpha = decodePicture(encodeJpeg(withAlpha, 90));
    ASSERT_EQ(fromAlpha.channels, 3);
    expectNear(pixel(fromAlpha, 2, 2), {0, 0, 220}, 24);
    EXPECT_TRUE(encodeJpeg(Picture(), 85).empty());
}

} // namespace
} // namespace vx::imaging
