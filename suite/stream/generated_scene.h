#pragma once
// A moving picture made on the spot, for a build that can't play the
// camera's file: a road, and a car-like box with a plate driving across it,
// 320x240 at 10 frames a second, the same 40 frames over and over.
#include "imaging/picture.h"

namespace vx::stream {

class GeneratedScene {
public:
    static constexpr int width = 320;
    static constexpr int height = 240;
    static constexpr double fps = 10.0;
    static constexpr int frames = 40;

    // The next frame (B G R, pixels of its own).
    imaging::Picture next();

private:
    int index_ = 0;
};

} // namespace vx::stream
