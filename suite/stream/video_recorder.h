#pragma once
// The stream's recording: chunks of `chunkSeconds` seconds at the given size
// into <videoRoot>/stream<ID>/YYYY_MM_DD/video_stream_<ID>_YYYY_MM_DD_hh_mm_ss.webm
// (VP8), the tree the manager's video quota walks. The chunk being written
// carries the in-use mark, so the quota leaves it alone until it is closed.
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>

#include <opencv2/core/mat.hpp>
#include <opencv2/videoio.hpp>

#include "platform/file_delete.h"

namespace vx::stream {

struct RecorderSettings {
    std::filesystem::path videoRoot;
    std::int32_t streamId = 0;
    int chunkSeconds = 300;
    int width = 0;    // 0: the frame's own
    int height = 0;
};

// The path of the chunk that begins at `when` (local time).
std::filesystem::path chunkPath(const std::filesystem::path& videoRoot, std::int32_t streamId, std::time_t when);

class VideoRecorder {
public:
    VideoRecorder(RecorderSettings settings, std::function<void(const std::string&)> log);
    // Adds a frame; starts a new chunk when the current one is full.
    void write(const cv::Mat& frame, double fps);

private:
    bool openChunk(const cv::Size& size, double fps);

    RecorderSettings settings_;
    std::function<void(const std::string&)> log_;
    // Declared first so it goes last: the writer finishes its chunk first.
    std::unique_ptr<platform::FileInUseMark> inUse_;   // on the chunk writer_ writes
    cv::VideoWriter writer_;
    std::chrono::steady_clock::time_point chunkStart_;
    bool failed_ = false;
};

} // namespace vx::stream
