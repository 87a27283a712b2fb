#pragma once
// Shared pieces of the live view tests: the GUI application that text
// drawing needs on Linux, and streams with made-up pictures.
#include <array>
#include <string>
#include <utility>

#include "imaging/picture.h"
#include "state/stream_table.h"

namespace vx::test {

// Makes the process's GUI application on first use (offscreen platform);
// nothing to make where text is drawn without one.
void ensureGuiApplication();

// A picture of one colour.
imaging::Picture plainPicture(int width, int height, int channels, const imaging::PictureColour& colour);

// The pixel's three colour channels.
std::array<int, 3> pixelAt(const imaging::Picture& picture, int x, int y);

// Width and height.
inline std::pair<int, int> sizeOf(const imaging::Picture& picture) { return {picture.width, picture.height}; }

// Adds a stream named "Камера <id>" (Windows-1251 in the record); returns
// its index.
int addSampleStream(core::StreamTable& table, int id);

// The folder of the interface pictures in the source tree.
std::string sourceImagesFolder();

} // namespace vx::test
