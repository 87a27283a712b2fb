// The quality reaches the encoder. Linux only: Wine's WIC encoder takes the
// "ImageQuality" option and ignores it.
#include <gtest/gtest.h>

#include "imaging/picture_ops.h"

namespace vx::imaging {
namespace {

TEST(PictureJpeg, LowerQualityGivesFewerBytes)
{
    Picture p = makePicture(160, 120, 3);
    fill(p, {0, 0, 220});
    for (int x = 0; x < 160; x += 3)
        drawLine(p, x, 0, 159 - x, 119, {255, 255, 255}, 1);
    EXPECT_LT(encodeJpeg(p, 25).size(), encodeJpeg(p, 85).size());
}

} // namespace
} // namespace vx::imaging
