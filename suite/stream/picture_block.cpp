#include "picture_block.h"

#include <cstdio>
#include <cstring>
#include <vector>

#include "imaging/picture_ops.h"

namespace vx::stream {

PictureBlock::PictureBlock(std::uint32_t streamId)
    : block_(platform::createSharedBlock("VxVideoStreamSharedMemoryID" + std::to_string(streamId), pictureBlockSize))
{
}

bool PictureBlock::write(const imaging::Picture& frame, int width, int height, platform::WindowHandle ownWindow)
{
    if (!block_ || frame.empty())
        return false;
    if (frame.data == written_.data && width == writtenWidth_ && height == writtenHeight_ &&
        ownWindow == writtenWindow_)
        return true;
    written_ = imaging::Picture();
    imaging::Picture picture = frame;
    if (width > 0 && height > 0 && (width != frame.width || height != frame.height) && width <= 8192 && height <= 8192)
        picture = imaging::scaled(frame, width, height);
    std::vector<std::uint8_t> jpeg;
    for (int quality = 85; quality >= 25; quality -= 20) {
        jpeg = imaging::encodeJpeg(picture, quality);
        if (jpeg.empty())
            return false;
        if (jpeg.size() + 64 < pictureBlockSize)
            break;
    }
    char header[64];
    const int n = std::snprintf(header, sizeof header, "getimage:%llx:%zu",
                                static_cast<unsigned long long>(ownWindow), jpeg.size());
    if (n <= 0 || static_cast<std::size_t>(n) + 1 + jpeg.size() > pictureBlockSize)
        return false;
    char* data = block_->writableData();
    std::memcpy(data, header, static_cast<std::size_t>(n) + 1);
    std::memcpy(data + n + 1, jpeg.data(), jpeg.size());
    written_ = frame;
    writtenWidth_ = width;
    writtenHeight_ = height;
    writtenWindow_ = ownWindow;
    return true;
}

} // namespace vx::stream
