// The zone handed to the window: an image over the picture's own pixels.
#include <gtest/gtest.h>

#include "imaging/picture_ops.h"
#include "ui/qt/zone_image.h"

namespace vx::ui {
namespace {

TEST(ZoneImage, SharesThePixelsAndKeepsThemAlive)
{
    QImage image;
    const uchar* data = nullptr;
    {
        imaging::Picture zone = imaging::makePicture(6, 4, 3);
        imaging::fill(zone, {1, 2, 3});
        data = zone.data;
        image = zoneImage(zone);
    }
    ASSERT_FALSE(image.isNull());
    EXPECT_EQ(image.constBits(), data);
    EXPECT_EQ(image.size(), QSize(6, 4));
    EXPECT_EQ(image.pixelColor(5, 3), QColor(3, 2, 1));
    EXPECT_TRUE(zoneImage(imaging::makePicture(2, 2, 4)).isNull());
}

} // namespace
} // namespace vx::ui
