#pragma once
// The stream's recording: chunks of `chunkSeconds` seconds at the given size
// into <videoRoot>/stream<ID>/YYYY_MM_DD/video_stream_<ID>_YYYY_MM_DD_hh_mm_ss.webm
// (VP8), the tree the manager's video quota walks. The chunk being written
// carries the in-use mark, so the quota leaves it alone until it is closed.
// The chunks are written where the platform has a VP8 writer (posix/:
// OpenCV's); elsewhere the recorder says once that it can't record and
// drops the frames.
#include <chrono>
#include <cstdint>
#include <ctime>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>

#include "imaging/picture.h"

namespace vx::stream {

struct RecorderSettings {
    std::filesystem::path videoRoot;
    std::int32_t streamId = 0;
    int chunkSeconds = 300;
    int width = 0;    // 0: the frame's own
    int height = 0;
};

// The path of the chunk that begins at `when` (local time). Part of the
// platform's writer: only where chunks are written.
std::filesystem::path chunkPath(const std::filesystem::path& videoRoot, std::int32_t streamId, std::time_t when);

class VideoRecorder {
public:
    VideoRecorder(RecorderSettings settings, std::function<void(const std::string&)> log);
    // The chunk being written is finished.
    ~VideoRecorder();
    VideoRecorder(const VideoRecorder&) = delete;
    VideoRecorder& operator=(const VideoRecorder&) = delete;
    // Adds a frame; starts a new chunk when the current one is full.
    void write(const imaging::Picture& frame, double fps);
    // False where frames are dropped anyway: nobody need convert them.
    bool takesFrames() const;

    struct Chunks;   // the platform's writer

private:
    std::unique_ptr<Chunks> chunks_;
};

} // namespace vx::stream
