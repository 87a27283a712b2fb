#include "generated_scene.h"

#include "imaging/picture_ops.h"

namespace vx::stream {

namespace {

// Fills the part of `rect` that lies inside the picture.
void fillRect(imaging::Picture& picture, const imaging::PictureRect& rect, const imaging::PictureColour& colour)
{
    imaging::Picture part = imaging::region(picture, imaging::intersection(rect, picture.bounds()));
    imaging::fill(part, colour);
}

} // namespace

imaging::Picture GeneratedScene::next()
{
    const int i = index_;
    index_ = (index_ + 1) % frames;
    imaging::Picture frame = imaging::makePicture(width, height, 3);
    imaging::fill(frame, {90, 110, 90});
    fillRect(frame, {0, 140, width, 100}, {70, 70, 70});
    for (int x = (i * 8) % 60 - 60; x < width; x += 60)
        fillRect(frame, {x, 188, 30, 4}, {230, 230, 230});

    const int travel = width + 160;
    const int left = (i * travel) / frames - 140;
    const imaging::PictureColour body{40, 40, 200};
    fillRect(frame, {left, 120, 140, 60}, body);
    fillRect(frame, {left + 25, 98, 90, 26}, {32, 32, 160});
    fillRect(frame, {left + 18, 170, 24, 24}, {20, 20, 20});
    fillRect(frame, {left + 98, 170, 24, 24}, {20, 20, 20});
    // The plate: white with a black rim, eight dark strokes for its signs.
    const imaging::PictureRect plate{left + 35, 150, 70, 18};
    fillRect(frame, plate, {250, 250, 250});
    imaging::drawRectangle(frame, plate, {0, 0, 0}, 1);
    for (int k = 0; k < 8; ++k) {
        const int x = plate.x + 6 + k * 8;
        if (x >= 0 && x < width)
            imaging::drawLine(frame, x, plate.y + 4, x + 2, plate.y + 13, {0, 0, 0}, 2);
    }
    return frame;
}

} // namespace vx::stream
