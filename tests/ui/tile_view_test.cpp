// The tile area widget: it shows the newest zone, handed to it as an image
// over the picture's own pixels.
#include <gtest/gtest.h>

#include <QApplication>

#include "imaging/picture_ops.h"
#include "support/qt_application.h"
#include "ui/qt/tile_view.h"
#include "ui/qt/zone_image.h"

using namespace vx;
using vx::ui::TileView;

namespace {

QImage plain(QColor colour)
{
    QImage image(8, 8, QImage::Format_BGR888);
    image.fill(colour);
    return image;
}

} // namespace

TEST(TileView, AZoneDrawnEarlierButDeliveredLaterIsDropped)
{
    test::qtApplication();
    TileView view;
    view.showZone(plain(Qt::red), 5);
    view.showZone(plain(Qt::blue), 4);
    EXPECT_EQ(view.zone().pixelColor(0, 0), QColor(Qt::red));
    view.showZone(plain(Qt::green), 6);
    EXPECT_EQ(view.zone().pixelColor(0, 0), QColor(Qt::green));
    view.showZone(QImage(), 7);
    EXPECT_EQ(view.zone().pixelColor(0, 0), QColor(Qt::green));
}

TEST(TileView, TheZoneImageHoldsTheColoursInTheWindowsLayout)
{
    QImage image;
    {
        imaging::Picture zone = imaging::makePicture(6, 4, 3);
        imaging::fill(zone, {1, 2, 3});
        image = ui::zoneImage(zone);
    }
    ASSERT_FALSE(image.isNull());
    EXPECT_EQ(image.format(), QImage::Format_RGB32);
    EXPECT_EQ(image.size(), QSize(6, 4));
    EXPECT_EQ(image.pixelColor(5, 3), QColor(3, 2, 1));
    EXPECT_TRUE(ui::zoneImage(imaging::makePicture(2, 2, 4)).isNull());
}
