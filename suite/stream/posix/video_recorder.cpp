// The recorder's chunks through OpenCV's video writer (FFmpeg's VP8).
#include "video_recorder.h"

#include <cstdio>
#include <ctime>

#include <opencv2/imgproc.hpp>
#include <opencv2/videoio.hpp>

#include "platform/file_delete.h"

namespace vx::stream {

std::filesystem::path chunkPath(const std::filesystem::path& videoRoot, std::int32_t streamId, std::time_t when)
{
    std::tm local{};
    ::localtime_r(&when, &local);
    char day[32];
    char stamp[64];
    std::snprintf(day, sizeof day, "%04d_%02d_%02d", local.tm_year + 1900, local.tm_mon + 1, local.tm_mday);
    std::snprintf(stamp, sizeof stamp, "%s_%02d_%02d_%02d", day, local.tm_hour, local.tm_min, local.tm_sec);
    const std::string stream = "stream" + std::to_string(streamId);
    // "video_stream_<ID>_…": the name the manager's archive quota reads.
    return videoRoot / stream / day / ("video_stream_" + std::to_string(streamId) + "_" + stamp + ".webm");
}

struct VideoRecorder::Chunks {
    bool openChunk(const cv::Size& size, double fps);
    void write(const cv::Mat& frame, double fps);

    RecorderSettings settings_;
    std::function<void(const std::string&)> log_;
    // Declared first so it goes last: the writer finishes its chunk first.
    std::unique_ptr<platform::FileInUseMark> inUse_;   // on the chunk writer_ writes
    cv::VideoWriter writer_;
    std::chrono::steady_clock::time_point chunkStart_;
    bool failed_ = false;
};

VideoRecorder::VideoRecorder(RecorderSettings settings, std::function<void(const std::string&)> log)
    : chunks_(std::make_unique<Chunks>())
{
    chunks_->settings_ = std::move(settings);
    chunks_->log_ = std::move(log);
    if (chunks_->settings_.chunkSeconds <= 0)
        chunks_->settings_.chunkSeconds = 300;
}

VideoRecorder::~VideoRecorder() = default;

bool VideoRecorder::takesFrames() const
{
    return true;
}

void VideoRecorder::write(const imaging::Picture& frame, double fps)
{
    if (frame.empty() || frame.channels != 3)
        return;
    // The frame's pixels as they are: the writer copies what it keeps.
    chunks_->write(cv::Mat(frame.height, frame.width, CV_8UC3, frame.data, frame.stride), fps);
}

bool VideoRecorder::Chunks::openChunk(const cv::Size& size, double fps)
{
    const auto path = chunkPath(settings_.videoRoot, settings_.streamId, std::time(nullptr));
    std::error_code ec;
    std::filesystem::create_directories(path.parent_path(), ec);
    writer_.release();
    inUse_.reset();   // the finished chunk may go now
    // Marked before the writer opens it (and truncates the same file), so no
    // quota pass finds the new chunk unmarked.
    inUse_ = platform::markFileInUse(path);
    if (!inUse_)
        log_("Video chunk can't be marked in use: " + path.string());
    writer_.open(path.string(), cv::CAP_FFMPEG, cv::VideoWriter::fourcc('V', 'P', '8', '0'), fps, size);
    if (!writer_.isOpened()) {
        log_("Video chunk can't be written: " + path.string());
        inUse_.reset();
        if (std::filesystem::file_size(path, ec) == 0 && !ec)
            std::filesystem::remove(path, ec);   // the empty file the mark made
        return false;
    }
    chunkStart_ = std::chrono::steady_clock::now();
    log_("Video chunk: " + path.string());
    return true;
}

void VideoRecorder::Chunks::write(const cv::Mat& frame, double fps)
{
    if (failed_ || frame.empty())
        return;
    const cv::Size size = settings_.width > 0 && settings_.height > 0 ? cv::Size(settings_.width, settings_.height)
                                                                      : frame.size();
    const bool full = std::chrono::steady_clock::now() - chunkStart_ >= std::chrono::seconds(settings_.chunkSeconds);
    if ((!writer_.isOpened() || full) && !openChunk(size, fps)) {
        failed_ = true;   // one complaint, not one per frame
        return;
    }
    if (frame.size() == size) {
        writer_.write(frame);
    } else {
        cv::Mat scaled;
        cv::resize(frame, scaled, size);
        writer_.write(scaled);
    }
}

} // namespace vx::stream
