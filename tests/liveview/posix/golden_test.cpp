// The zone as a whole, compared with a reference picture under golden/. It
// holds text in this platform's fonts, so it is checked on Linux only. The
// reference is made by this code (run with VEXLANE_UPDATE_GOLDEN=1 and
// look at it before committing); text may differ by a few pixels between
// font versions, so the comparison allows a small share of differing pixels.
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include <opencv2/core.hpp>
#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

#include "liveview/live_fixture.h"
#include "imaging/picture_ops.h"
#include "liveview/interface_images.h"
#include "liveview/overlay.h"
#include "liveview/tile_hover.h"
#include "liveview/tile_pictures.h"

namespace vx::liveview {
namespace {

// Seven streams in a mix of states on 800 by 600, the second stream's open
// button under the mouse.
constexpr const char* goldenName = "streams7_pictures_hover";
constexpr int goldenStreams = 7, goldenWidth = 800, goldenHeight = 600;

std::string goldenPath(const char* name)
{
    return std::string(VEXLANE_SOURCE_DIR) + "/tests/liveview/golden/" + name + ".png";
}

// A picture of `width` by `height` with a gradient and a few shapes; the
// same for the same arguments.
imaging::Picture samplePicture(int width, int height, int seed)
{
    cv::Mat picture(height, width, CV_8UC3);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            picture.at<cv::Vec3b>(y, x) = cv::Vec3b(static_cast<uchar>((x * 255) / std::max(1, width - 1)),
                                                    static_cast<uchar>((y * 255) / std::max(1, height - 1)),
                                                    static_cast<uchar>((seed * 53) % 256));
    cv::circle(picture, {width / 2, height / 2}, std::min(width, height) / 4, cv::Scalar(255, 255, 255), -1);
    cv::rectangle(picture, cv::Rect(width / 8, height / 8, width / 6 + 1, height / 6 + 1), cv::Scalar(0, 0, 255), -1);
    imaging::Picture out = imaging::makePicture(width, height, 3);
    picture.copyTo(cv::Mat(height, width, CV_8UC3, out.data, out.stride));
    return out;
}

// The picture's pixels seen as a matrix (no copy).
cv::Mat matOf(const imaging::Picture& p)
{
    return cv::Mat(p.height, p.width, CV_8UC(p.channels), p.data, p.stride);
}

// Streams in a mix of states: running or not, planned or not, the video
// window hidden or not, with the large buttons on some, and with a fresh
// picture, a stale one, or none.
void fillTable(core::StreamTable& table)
{
    for (int i = 0; i < goldenStreams; ++i)
        test::addSampleStream(table, i + 1);
    table.withDrawLock([](std::vector<core::CameraRuntime>& records) {
        const cv::Size aspects[] = {{320, 240}, {240, 320}, {320, 320}, {64, 16}, {320, 180}};
        for (std::size_t i = 0; i < records.size(); ++i) {
            core::CameraRuntime& r = records[i];
            r.running = i % 3 != 2;
            r.planned = i % 4 != 3;
            r.config.unShowVideo = i % 5 == 4;
            r.control.buttonOpen = i % 7 == 1;
            r.control.buttonClose = i % 7 == 1 || i % 7 == 5;
            if (i % 6 != 5) {
                const cv::Size size = aspects[i % 5];
                r.image = samplePicture(size.width, size.height, static_cast<int>(i));
                r.hasImage = i % 6 != 4;   // every sixth picture is stale
                r.channel.window = r.running ? 100 + static_cast<platform::WindowHandle>(i) : 0;
            }
        }
    });
}

struct Difference {
    double meanAbsolute = 0;
    double shareOff = 0;   // share of pixels off by more than 48 in a channel
};

Difference compare(const cv::Mat& a, const cv::Mat& b)
{
    cv::Mat diff;
    cv::absdiff(a, b, diff);
    const cv::Scalar mean = cv::mean(diff);
    cv::Mat channelMax;
    cv::Mat channels[3];
    cv::split(diff, channels);
    cv::max(channels[0], channels[1], channelMax);
    cv::max(channelMax, channels[2], channelMax);
    const int off = cv::countNonZero(channelMax > 48);
    return {(mean[0] + mean[1] + mean[2]) / 3.0, double(off) / double(a.total())};
}

TEST(Golden, ZoneMatchesItsReference)
{
    test::ensureGuiApplication();
    core::StreamTable table;
    LiveView view;
    bool all = false;
    view.buttonImages = loadButtonImages(test::sourceImagesFolder(), all);
    ASSERT_TRUE(all);
    fillTable(table);
    DrawHooks hooks;
    drawCamera(table, view, goldenWidth, goldenHeight, hooks);
    const TileRect r = view.grid.tileRects[1];
    updateHover(table, view, r.x + r.width / 2, r.y + static_cast<int>(r.width * 0.3));
    ASSERT_TRUE(view.hover.redrawNeeded);
    const ZonePicture zone = drawCamera(table, view, -1, -1, hooks);
    ASSERT_EQ(test::sizeOf(zone.pixels), std::pair(goldenWidth, goldenHeight));

    const std::string path = goldenPath(goldenName);
    if (const char* update = std::getenv("VEXLANE_UPDATE_GOLDEN"); update && std::string(update) == "1") {
        ASSERT_TRUE(cv::imwrite(path, matOf(zone.pixels), {cv::IMWRITE_PNG_COMPRESSION, 9}));
        GTEST_SKIP() << "reference written: " << path;
    }
    const cv::Mat reference = cv::imread(path, cv::IMREAD_COLOR);
    ASSERT_FALSE(reference.empty()) << "no reference " << path;
    ASSERT_EQ(reference.size(), matOf(zone.pixels).size());
    const Difference d = compare(matOf(zone.pixels), reference);
    EXPECT_LT(d.meanAbsolute, 1.5);
    EXPECT_LT(d.shareOff, 0.01);
}

} // namespace
} // namespace vx::liveview
