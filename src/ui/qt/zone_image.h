#pragma once
// The finished zone as a QImage for the window. The image is made on the
// drawing thread in the window's own pixel layout (32 bits, opaque), so that
// painting it is a plain copy instead of a conversion at every paint, and
// it holds its pixels itself: handing it to the window's thread copies
// nothing more.
#include <QImage>

#include "imaging/picture.h"

namespace vx::ui {

// A three-channel picture as an opaque 32-bit image; a null image for any
// other picture.
QImage zoneImage(const imaging::Picture& zone);

} // namespace vx::ui
