#pragma once
// Shared pieces of the live view tests: the GUI application that text
// drawing needs, and streams with made-up pictures.
#include <string>

#include <opencv2/core/mat.hpp>

#include "state/stream_table.h"

namespace vx::test {

// Makes the process's GUI application on first use (offscreen platform).
void ensureGuiApplication();

// A picture of `width` by `height` with a gradient and a few shapes; the
// same for the same arguments.
cv::Mat samplePicture(int width, int height, int seed);

// Adds a stream named "Камера <id>" (Windows-1251 in the record); returns
// its index.
int addSampleStream(core::StreamTable& table, int id);

// The folder of the interface pictures in the source tree.
std::string sourceImagesFolder();

} // namespace vx::test
