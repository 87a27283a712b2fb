#pragma once
// The finished zone as a QImage for the window: the image shares the
// picture's pixels and keeps them alive, so handing it from the drawing
// thread to the window's thread copies nothing.
#include <QImage>

#include <opencv2/core/mat.hpp>

namespace vx::liveview {

// A three-channel 8-bit picture as an image over the same pixels; a null
// image for any other picture.
QImage zoneImage(const cv::Mat& zone);

} // namespace vx::liveview
