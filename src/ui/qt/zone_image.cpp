#include "ui/qt/zone_image.h"

namespace vx::ui {

QImage zoneImage(const imaging::Picture& zone)
{
    if (zone.empty() || zone.channels != 3)
        return QImage();
    // The image's clean-up drops its reference to the pixels.
    auto* owner = new imaging::Picture(zone);
    return QImage(
        owner->data, owner->width, owner->height, static_cast<qsizetype>(owner->stride), QImage::Format_BGR888,
        [](void* picture) { delete static_cast<imaging::Picture*>(picture); }, owner);
}

} // namespace vx::ui
