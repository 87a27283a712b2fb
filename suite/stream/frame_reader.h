#pragma once
// Where the stream's frames come from: one opened file or link, read frame
// by frame. Reading a frame (grab) decodes it; turning it into B G R pixels
// (retrieve) is a step of its own, taken only for a frame someone wants.
// Each platform has its own reader (posix/: OpenCV's video capture; win32/:
// Media Foundation's source reader, or a generated scene for a file it
// can't play). The reading thread, its pacing and the reconnect rules are
// the video source's, the same on every platform.
#include <functional>
#include <memory>
#include <string>

#include "imaging/picture.h"

namespace vx::stream {

struct SourceSettings;

class FrameReader {
public:
    virtual ~FrameReader() = default;
    // Frames per second as the source tells them; 0 when it doesn't.
    virtual double fps() const = 0;
    // Reads the next frame; false at the end of a file or when a link is lost.
    virtual bool grab() = 0;
    // The frame read last, as B G R, valid until the next grab; false when
    // it can't be had.
    virtual bool retrieve(imaging::Picture& frame) = 0;
};

// What the readers of these settings need set up for the whole process;
// called once, before the reading thread starts.
void prepareFrameReaders(const SourceSettings& settings);

// Opens `settings.path` (a link when `link`); null when it can't be opened.
// Called on the reading thread, which it may block up to the open timeout.
// `log` says which kind of reader took the source, where there is a choice.
std::unique_ptr<FrameReader> openFrameReader(const SourceSettings& settings, bool link,
                                             const std::function<void(const std::string&)>& log);

} // namespace vx::stream
