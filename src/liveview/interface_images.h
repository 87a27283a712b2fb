#pragma once
// The interface's picture files below "images/": the twelve tile-button
// pictures, read unchanged, in a fixed order.
#include <array>
#include <filesystem>
#include <string>
#include <vector>

#include "imaging/picture.h"
#include "state/app_state.h"
#include "liveview/live_view.h"

namespace vx::liveview {

enum ButtonImage : int {
    imageRunStatus = 0,
    imageRunStatusOff = 1,
    imageRun = 2,
    imageStop = 3,
    imageVideo = 4,
    imageRecognition = 5,
    imageDirect = 6,
    imageDelete = 7,
    imageShowWindowOn = 8,
    imageShowWindowOff = 9,
    imageShowConsoleOn = 10,   // loaded, never drawn
    imageShowConsoleOff = 11,  // loaded, never drawn
};

extern const std::array<const char*, 12> buttonImageFiles;

// Reads the twelve pictures from `folder`; a file that can't be read leaves
// an empty picture at its position. `allFound` tells whether all were read.
std::vector<imaging::Picture> loadButtonImages(const std::filesystem::path& folder, bool& allFound);

// The status line when a picture is missing (Windows-1251).
std::string missingImagesText();

// Fills `view.buttonImages` from `folder`; when any picture is missing, the
// status line says so once, after all have been tried. Returns whether all
// were found.
bool loadInterfaceImages(LiveView& view, const std::filesystem::path& folder, core::StatusText& status);

} // namespace vx::liveview
