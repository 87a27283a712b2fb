#include "ui/qt/zone_image.h"

#include "imaging/picture_ops.h"

namespace vx::ui {

QImage zoneImage(const imaging::Picture& zone)
{
    if (zone.empty() || zone.channels != 3)
        return QImage();
    // B G R A bytes with A at 255 are Format_RGB32 on a little-endian machine.
    auto* owner = new imaging::Picture(imaging::makePicture(zone.width, zone.height, 4));
    imaging::convertInto(zone, *owner);
    // The image's clean-up drops its reference to the pixels.
    return QImage(
        owner->data, owner->width, owner->height, static_cast<qsizetype>(owner->stride), QImage::Format_RGB32,
        [](void* picture) { delete static_cast<imaging::Picture*>(picture); }, owner);
}

} // namespace vx::ui
