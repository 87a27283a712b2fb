#include "picture_block.h"

#include <cstdio>
#include <cstring>
#include <vector>

#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

namespace vx::stream {

PictureBlock::PictureBlock(std::uint32_t streamId)
    : block_(platform::createSharedBlock("VxVideoStreamSharedMemoryID" + std::to_string(streamId), pictureBlockSize))
{
}

bool PictureBlock::write(const cv::Mat& frame, int width, int height, platform::WindowHandle ownWindow)
{
    if (!block_ || frame.empty())
        return false;
    cv::Mat scaled = frame;
    if (width > 0 && height > 0 && (width != frame.cols || height != frame.rows) && width <= 8192 && height <= 8192)
        cv::resize(frame, scaled, cv::Size(width, height));
    std::vector<unsigned char> jpeg;
    for (int quality = 85; quality >= 25; quality -= 20) {
        if (!cv::imencode(".jpg", scaled, jpeg, {cv::IMWRITE_JPEG_QUALITY, quality}))
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
    return true;
}

} // namespace vx::stream
