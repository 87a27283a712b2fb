// The zone handed to the window: an opaque 32-bit image of the picture that
// outlives it.
#include <gtest/gtest.h>

#include "imaging/picture_ops.h"
#include "ui/qt/zone_image.h"

namespace vx::ui {
namespace {

TEST(ZoneImage, HoldsTheColoursInTheWindowsLayout)
{
    QImage image;
    {
        imaging::Picture zone = imaging::makePicture(6, 4, 3);
        imaging::fill(zone, {1, 2, 3});
        image = zoneImage(zone);
    }
    ASSERT_FALSE(image.isNull());
    EXPECT_EQ(image.format(), QImage::Format_RGB32);
    EXPECT_EQ(image.size(), QSize(6, 4));
    EXPECT_EQ(image.pixelColor(5, 3), QColor(3, 2, 1));
    EXPECT_TRUE(zoneImage(imaging::makePicture(2, 2, 4)).isNull());
}

} // namespace
} // namespace vx::ui
