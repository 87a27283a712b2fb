#include "imaging/picture_ops.h"

namespace vx::imaging {

Picture tilePicture(const Picture& source, int side)
{
    if (source.empty() || side <= 0 || (source.channels != 1 && source.channels != 3 && source.channels != 4))
        return Picture();
    Picture tile = makePicture(side, side, 4);
    convertInto(scaled(source, side, side), tile);
    return tile;
}

} // namespace vx::imaging
