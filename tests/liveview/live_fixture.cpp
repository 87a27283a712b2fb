#include "live_fixture.h"

#include <QGuiApplication>
#include <cstdlib>

#include <opencv2/imgproc.hpp>

#include "config/text_codec.h"

namespace vx::test {

void ensureGuiApplication()
{
    if (QGuiApplication::instance())
        return;
    setenv("QT_QPA_PLATFORM", "offscreen", 0);
    static int argc = 1;
    static char name[] = "liveview_tests";
    static char* argv[] = {name, nullptr};
    static QGuiApplication* app = new QGuiApplication(argc, argv);
    (void)app;
}

cv::Mat samplePicture(int width, int height, int seed)
{
    cv::Mat picture(height, width, CV_8UC3);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            picture.at<cv::Vec3b>(y, x) = cv::Vec3b(static_cast<uchar>((x * 255) / std::max(1, width - 1)),
                                                    static_cast<uchar>((y * 255) / std::max(1, height - 1)),
                                                    static_cast<uchar>((seed * 53) % 256));
    cv::circle(picture, {width / 2, height / 2}, std::min(width, height) / 4, cv::Scalar(255, 255, 255), -1);
    cv::rectangle(picture, cv::Rect(width / 8, height / 8, width / 6 + 1, height / 6 + 1), cv::Scalar(0, 0, 255), -1);
    return picture;
}

int addSampleStream(core::StreamTable& table, int id)
{
    config::CameraCommon common;
    common.videoName = config::utf8ToCp1251("Камера " + std::to_string(id));
    std::int32_t given = id;
    table.addStream(common, config::CameraRecognition{}, config::CameraControl{}, given, true);
    return table.size() - 1;
}

std::string sourceImagesFolder()
{
    return std::string(VEXLANE_SOURCE_DIR) + "/images";
}

} // namespace vx::test
