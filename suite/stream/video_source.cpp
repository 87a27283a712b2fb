#include "video_source.h"

#include <chrono>
#include <cstdlib>

#include <opencv2/videoio.hpp>

namespace vx::stream {
namespace {

using Clock = std::chrono::steady_clock;

bool isLink(const std::string& path)
{
    return path.find("://") != std::string::npos;
}

} // namespace

VideoSource::VideoSource(SourceSettings settings, std::function<void(const std::string&)> log, FrameSink sink)
    : settings_(std::move(settings)), log_(std::move(log)), sink_(std::move(sink))
{
    if (settings_.tcp)
        ::setenv("OPENCV_FFMPEG_CAPTURE_OPTIONS", "rtsp_transport;tcp", 1);
    thread_ = std::thread([this] { run(); });
}

VideoSource::~VideoSource()
{
    stop_ = true;
    if (thread_.joinable())
        thread_.join();
}

cv::Mat VideoSource::latest() const
{
    std::lock_guard<std::mutex> lock(mutex_);
    return latest_.clone();
}

bool VideoSource::pauseFor(double seconds)
{
    const auto until = Clock::now() + std::chrono::duration<double>(seconds);
    while (!stop_ && Clock::now() < until)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    return !stop_;
}

void VideoSource::run()
{
    int failures = 0;
    auto idle = [this] {
        while (!stop_)
            std::this_thread::sleep_for(std::chrono::milliseconds(50));
    };
    while (!stop_) {
        cv::VideoCapture capture;
        capture.open(settings_.path, cv::CAP_FFMPEG);
        bool gotFrames = false;
        if (!capture.isOpened()) {
            log_("Video source can't be opened: " + settings_.path);
        } else {
            double fps = capture.get(cv::CAP_PROP_FPS);
            if (!(fps > 0.5 && fps < 200))
                fps = settings_.fps > 0 ? settings_.fps : 5.0;
            log_("Video source opened: " + settings_.path);
            cv::Mat frame;
            auto next = Clock::now();
            while (!stop_ && capture.read(frame) && !frame.empty()) {
                gotFrames = true;
                {
                    std::lock_guard<std::mutex> lock(mutex_);
                    frame.copyTo(latest_);
                }
                if (sink_)
                    sink_(frame, fps);
                next += std::chrono::microseconds(static_cast<long long>(1e6 / fps));
                while (!stop_ && Clock::now() < next)
                    std::this_thread::sleep_for(std::chrono::milliseconds(5));
            }
            if (stop_)
                return;
            if (gotFrames && !isLink(settings_.path)) {
                failures = 0;
                continue;   // a file starts again at its end
            }
            log_("Video source lost: " + settings_.path);
        }
        if (gotFrames)
            failures = 0;
        // Without reconnection, or with the attempts used up, the stream
        // stays without frames until it is told to quit.
        if (!settings_.reconnect) {
            idle();
            return;
        }
        ++failures;
        if (settings_.attempts > 0 && failures > settings_.attempts) {
            log_("Video source: no attempts left");
            idle();
            return;
        }
        if (!pauseFor(std::max(1, settings_.secondsToReconnect)))
            return;
    }
}

} // namespace vx::stream
