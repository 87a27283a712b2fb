#pragma once
// The finished zone as a QImage for the window: the image shares the
// picture's pixels and keeps them alive, so handing it from the drawing
// thread to the window's thread copies nothing.
#include <QImage>

#include "imaging/picture.h"

namespace vx::ui {

// A three-channel picture as an image over the same pixels; a null image
// for any other picture.
QImage zoneImage(const imaging::Picture& zone);

} // namespace vx::ui
