// No recording on Windows yet: the system has no VP8 writer to hand. The
// recorder says so once and drops the frames.
#include "video_recorder.h"

namespace vx::stream {

struct VideoRecorder::Chunks {};

VideoRecorder::VideoRecorder(RecorderSettings settings, std::function<void(const std::string&)> log)
{
    if (log)
        log("Recording isn't available on this build: stream " + std::to_string(settings.streamId) +
            " is not recorded");
}

VideoRecorder::~VideoRecorder() = default;

void VideoRecorder::write(const imaging::Picture&, double) {}

bool VideoRecorder::takesFrames() const
{
    return false;
}

} // namespace vx::stream
