#include "imaging/picture_ops.h"

namespace vx::imaging {

Picture tilePicture(const Picture& source, int side)
{
    if (source.empty() || side <= 0 || (source.channels != 1 && source.channels != 3 && source.channels != 4))
        return Picture();
    Picture tile = makePicture(side, side, 4);
    // Stretching to its own size would give the same pixels.
    convertInto(source.width == side && source.height == side ? source : scaled(source, side, side), tile);
    return tile;
}

} // namespace vx::imaging
