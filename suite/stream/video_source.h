#pragma once
// The stream's input: a file or a network link opened with OpenCV's video
// capture on a thread of its own, which keeps the latest frame. A file plays
// at its own rate and starts again at its end; a link that fails is opened
// again as the camera's settings say (reconnect, secondsToReconnect,
// attempts, 0 attempts being no limit), and a link that can't be had
// leaves the stream running without frames.
#include <atomic>
#include <functional>
#include <mutex>
#include <string>
#include <thread>

#include <opencv2/core/mat.hpp>

namespace vx::stream {

struct SourceSettings {
    std::string path;   // UTF-8: a file, or a URL
    bool tcp = false;   // RTSP over TCP
    bool reconnect = false;
    int secondsToReconnect = 1;
    int attempts = 0;
    double fps = 5.0;   // when the source doesn't tell its own
};

class VideoSource {
public:
    using FrameSink = std::function<void(const cv::Mat& frame, double fps)>;
    VideoSource(SourceSettings settings, std::function<void(const std::string&)> log, FrameSink sink);
    ~VideoSource();
    VideoSource(const VideoSource&) = delete;
    VideoSource& operator=(const VideoSource&) = delete;

    // A copy of the latest frame; empty until one came.
    cv::Mat latest() const;

private:
    void run();
    bool pauseFor(double seconds);

    SourceSettings settings_;
    std::function<void(const std::string&)> log_;
    FrameSink sink_;
    mutable std::mutex mutex_;
    cv::Mat latest_;
    std::atomic<bool> stop_{false};
    std::thread thread_;
};

} // namespace vx::stream
