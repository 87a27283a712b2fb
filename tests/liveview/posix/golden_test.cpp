// The zone as a whole, compared with reference pictures under golden/. They
// hold text in this platform's fonts, so they are checked on Linux only. The
// references are made by this code (run with VEXLANE_UPDATE_GOLDEN=1 and
// look at them before committing); text may differ by a few pixels between
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

struct GoldenCase {
    const char* name;
    int streams;
    bool pictures;
    bool hovered;
    int width, height;
};

const GoldenCase goldenCases[] = {
    {"streams0", 0, false, false, 640, 480},
    {"streams0_hover", 0, false, true, 640, 480},
    {"streams1_pictures", 1, true, false, 640, 480},
    {"streams1_pictures_hover", 1, true, true, 640, 480},
    {"streams7_pictures", 7, true, false, 800, 600},
    {"streams7_pictures_hover", 7, true, true, 800, 600},
    {"streams100", 100, false, false, 1280, 720},
    {"streams100_pictures", 100, true, false, 1280, 720},
    {"streams100_pictures_hover", 100, true, true, 1280, 720},
};

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
void fillTable(core::StreamTable& table, const GoldenCase& c)
{
    for (int i = 0; i < c.streams; ++i)
        test::addSampleStream(table, i + 1);
    table.withDrawLock([&c](std::vector<core::CameraRuntime>& records) {
        const cv::Size aspects[] = {{320, 240}, {240, 320}, {320, 320}, {64, 16}, {320, 180}};
        for (std::size_t i = 0; i < records.size(); ++i) {
            core::CameraRuntime& r = records[i];
            r.running = i % 3 != 2;
            r.planned = i % 4 != 3;
            r.config.unShowVideo = i % 5 == 4;
            r.control.buttonOpen = i % 7 == 1;
            r.control.buttonClose = i % 7 == 1 || i % 7 == 5;
            if (c.pictures && i % 6 != 5) {
                const cv::Size size = aspects[i % 5];
                r.image = samplePicture(size.width, size.height, static_cast<int>(i));
                r.hasImage = i % 6 != 4;   // every sixth picture is stale
                r.channel.window = r.running ? 100 + static_cast<platform::WindowHandle>(i) : 0;
            }
        }
    });
}

// The hover of a case: the add tile when there is no stream, the open button
// of the second stream when there is one, else the first stream's settings
// button.
void hover(core::StreamTable& table, LiveView& view, const GoldenCase& c)
{
    const TileRect add = view.grid.addTileRect;
    if (c.streams == 0) {
        updateHover(table, view, add.x + 10, add.y + 10);
        return;
    }
    const int index = c.streams > 1 ? 1 : 0;
    const TileRect r = view.grid.tileRects[static_cast<std::size_t>(index)];
    if (index == 1)
        updateHover(table, view, r.x + r.width / 2, r.y + static_cast<int>(r.width * 0.3));
    else
        updateHover(table, view, r.x + r.width - 3, r.y + r.width - 3);
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

class Golden : public ::testing::TestWithParam<GoldenCase> {};

TEST_P(Golden, ZoneMatchesItsReference)
{
    test::ensureGuiApplication();
    const GoldenCase& c = GetParam();
    core::StreamTable table;
    LiveView view;
    bool all = false;
    view.buttonImages = loadButtonImages(test::sourceImagesFolder(), all);
    ASSERT_TRUE(all);
    fillTable(table, c);
    DrawHooks hooks;
    ZonePicture zone = drawCamera(table, view, c.width, c.height, hooks);
    if (c.hovered) {
        hover(table, view, c);
        ASSERT_TRUE(view.hover.redrawNeeded);
        zone = drawCamera(table, view, -1, -1, hooks);
    }
    ASSERT_EQ(test::sizeOf(zone.pixels), std::pair(c.width, c.height));

    const std::string path = goldenPath(c.name);
    if (const char* update = std::getenv("VEXLANE_UPDATE_GOLDEN"); update && std::string(update) == "1") {
        ASSERT_TRUE(cv::imwrite(path, matOf(zone.pixels), {cv::IMWRITE_PNG_COMPRESSION, 9}));
        GTEST_SKIP() << "reference written: " << path;
    }
    const cv::Mat reference = cv::imread(path, cv::IMREAD_COLOR);
    ASSERT_FALSE(reference.empty()) << "no reference " << path;
    ASSERT_EQ(reference.size(), matOf(zone.pixels).size());
    const Difference d = compare(matOf(zone.pixels), reference);
    EXPECT_LT(d.meanAbsolute, 1.5) << c.name;
    EXPECT_LT(d.shareOff, 0.01) << c.name;
}

INSTANTIATE_TEST_SUITE_P(Zones, Golden, ::testing::ValuesIn(goldenCases),
                         [](const ::testing::TestParamInfo<GoldenCase>& info) { return std::string(info.param.name); });

// The golden pictures are only as good as their differences: a changed
// button, a missing text or a shifted tile must fail the comparison.
TEST(GoldenComparison, CatchesASmallChange)
{
    cv::Mat a(480, 640, CV_8UC3, cv::Scalar(128, 128, 128));
    cv::Mat b = a.clone();
    cv::rectangle(b, cv::Rect(10, 10, 80, 80), cv::Scalar(0, 0, 0), -1);   // one missing button-sized patch
    const Difference d = compare(a, b);
    EXPECT_GE(d.shareOff, 0.01);
}

} // namespace
} // namespace vx::liveview
