#include "liveview/zone_image.h"

namespace vx::liveview {

QImage zoneImage(const cv::Mat& zone)
{
    if (zone.empty() || zone.type() != CV_8UC3)
        return QImage();
    // The image's clean-up drops its reference to the pixels.
    auto* owner = new cv::Mat(zone);
    return QImage(
        owner->data, owner->cols, owner->rows, static_cast<qsizetype>(owner->step), QImage::Format_BGR888,
        [](void* mat) { delete static_cast<cv::Mat*>(mat); }, owner);
}

} // namespace vx::liveview
