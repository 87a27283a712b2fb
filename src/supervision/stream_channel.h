#pragma once
// The command channel to the stream processes: short texts sent to a
// stream's window as copy data, and the stream's answer to "getimage", a
// notification whose cbData is the stream's ID while the picture waits in
// the stream's shared block.
//
// The block "VxVideoStreamSharedMemoryID<id>", as the manager reads it:
//   offset 0:     "getimage:<stream window handle, hex>:<L>" and a zero byte
//   offset n + 1: L bytes of a picture (JPEG or PNG)
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "state/stream_channel.h"
#include "state/stream_table.h"
#include "platform/window_endpoint.h"

namespace vx::supervision {

inline constexpr std::size_t sharedBlockViewSize = 500000;

// "VxVideoStreamSharedMemoryID" and the ID in decimal.
std::string sharedBlockName(std::uint32_t streamId);

// Copies `text` into a 255-byte buffer (zero-terminated, cut at 254) and
// sends all 255 bytes, cbData 255. True when the stream handled it in time.
// With a null window nothing is sent and the result is false.
bool sendText(platform::WindowHandle window, std::string text, int timeoutMs);

// "hidevideo true|false" / "hideconsole true|false": 0 sent, 1 the channel
// has no window, 2 the send failed, 3 `value` is neither "true" nor "false"
// (nothing is sent then).
int hideVideo(const core::StreamChannel& channel, const std::string& value);
int hideConsole(const core::StreamChannel& channel, const std::string& value);

// kind 0 hides or shows the console, kind 1 the video window, any other
// kind nothing. The word is "false" when `show` is non-zero. An index
// outside the table does nothing. Runs on an asynchronous task.
void sendHideCommand(core::StreamTable& table, int kind, int show, int index);

// "getimage <width> <height> <hostWindow>" to the stream, with its channel's
// timeout; the send's result is not looked at. No window, nothing sent.
void requestImage(const core::StreamChannel& channel, platform::WindowHandle hostWindow, std::int64_t width,
                  std::int64_t height);

// Splits on ":" (runs of separators give no empty pieces). Logs
// "decodeCommand" at TRACE.
std::vector<std::string> decodeCommand(const std::string& text);

// The handler of a stream's notification, on the UI thread: cbData chooses
// the stream's block (mapped on first use and kept in the record), the
// handle in the block's header chooses the records that take the picture.
// A header that doesn't fit the view, a length that doesn't parse or a
// picture that doesn't decode is dropped. Always true (the message was
// handled).
bool onCopyData(core::StreamTable& table, const platform::CopyDataMessage& message,
                const std::function<std::int64_t()>& now);

} // namespace vx::supervision
