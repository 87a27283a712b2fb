#pragma once
// The stream's input: a file or a network link opened by the platform's
// frame reader (frame_reader.h) on a thread of its own. Every frame is read
// (decoded), but turned into B G R pixels only when someone takes it: the
// recorder, which takes them all, or a still asked for, which is the newest
// frame read at the time.
// A file plays at its own rate and starts again at its end. A link is read
// as fast as its frames come; opening and reading it are bounded by
// timeouts, so a dead camera never blocks the thread for long. When a link
// is lost its last frame is dropped at once: the stream has no picture to
// hand out until frames come again. It is then opened again as the camera's
// settings say (reconnect, secondsToReconnect, attempts, 0 attempts being
// no limit); without reconnection, or with the attempts used up, the source
// reports that it has failed for good.
#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

#include "imaging/picture.h"

namespace vx::stream {

struct SourceSettings {
    std::string path;   // UTF-8: a file, or a URL
    bool tcp = false;   // RTSP over TCP
    bool reconnect = false;
    int secondsToReconnect = 1;
    int attempts = 0;
    double fps = 5.0;   // when the source doesn't tell its own
    int openTimeoutMs = 5000;
    int readTimeoutMs = 1000;
};

// A network link ("rtsp://...", "http://..."), as opposed to a file.
bool isLink(const std::string& path);

class VideoSource {
public:
    // Gets every frame on the reading thread; the frame is valid during the
    // call. Without a sink, frames are converted only for stills.
    using FrameSink = std::function<void(const imaging::Picture& frame, double fps)>;
    using Log = std::function<void(const std::string&)>;
    VideoSource(SourceSettings settings, Log log, FrameSink sink);
    // Stops as stop() does, with a short wait.
    ~VideoSource();
    VideoSource(const VideoSource&) = delete;
    VideoSource& operator=(const VideoSource&) = delete;

    // Asks for the newest frame as a still: the reading thread converts the
    // frame it holds at once, or, while it waits for a link's next frame,
    // that one when it comes.
    void askStill();
    struct Still {
        // The last frame converted for a still; empty until one was and
        // while a link is lost. Its pixels are its own: later frames never
        // change them, and it stays the same picture until a newer one is
        // taken.
        imaging::Picture picture;
        bool newest = false;   // no frame was read after it
    };
    // Waits up to `wait` for the newest frame to be kept.
    Still still(std::chrono::milliseconds wait = std::chrono::milliseconds(0)) const;
    // True once a link is lost (or can't be opened) and no further attempt
    // is to be made.
    bool failed() const;
    // Asks the reading thread to end and waits up to `wait` for it. False
    // when it is still inside a blocking open or read: it is then left to
    // finish by itself and touches nothing of this object any more (no log,
    // no sink).
    bool stop(std::chrono::milliseconds wait);

    struct State;   // shared with the reading thread

private:
    std::shared_ptr<State> state_;
    std::thread thread_;
};

} // namespace vx::stream
