// Frames through OpenCV's video capture (its FFmpeg back end): files, RTSP
// and HTTP links, with the open and read timeouts of the settings.
#include "frame_reader.h"

#include <cstdlib>
#include <vector>

#include <opencv2/videoio.hpp>

#include "video_source.h"

namespace vx::stream {

namespace {

class CaptureReader : public FrameReader {
public:
    double fps() const override { return capture.get(cv::CAP_PROP_FPS); }
    bool grab() override { return capture.grab(); }
    bool retrieve(imaging::Picture& frame) override
    {
        if (!capture.retrieve(mat) || mat.empty() || mat.depth() != CV_8U)
            return false;
        frame = imaging::Picture();
        frame.width = mat.cols;
        frame.height = mat.rows;
        frame.channels = mat.channels();
        frame.stride = mat.step;
        frame.data = mat.data;   // the capture's own buffer, until the next grab
        return true;
    }

    cv::VideoCapture capture;
    cv::Mat mat;
};

} // namespace

void prepareFrameReaders(const SourceSettings& settings)
{
    // FFmpeg's RTSP transport is chosen for the whole process.
    if (settings.tcp)
        ::setenv("OPENCV_FFMPEG_CAPTURE_OPTIONS", "rtsp_transport;tcp", 1);
}

std::unique_ptr<FrameReader> openFrameReader(const SourceSettings& settings, bool link,
                                             const std::function<void(const std::string&)>&)
{
    auto reader = std::make_unique<CaptureReader>();
    bool opened = false;
    if (!link) {
        opened = reader->capture.open(settings.path, cv::CAP_FFMPEG);
    } else {
        const std::vector<int> timeouts{cv::CAP_PROP_OPEN_TIMEOUT_MSEC, settings.openTimeoutMs,
                                        cv::CAP_PROP_READ_TIMEOUT_MSEC, settings.readTimeoutMs};
        opened = reader->capture.open(settings.path, cv::CAP_FFMPEG, timeouts);
    }
    if (!opened)
        return nullptr;
    return reader;
}

} // namespace vx::stream
