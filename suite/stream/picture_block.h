#pragma once
// The stream's side of the picture hand-over: the block
// "VxVideoStreamSharedMemoryID<id>" this process creates, holding the
// header "getimage:<own window handle, hex>:<L>", its zero byte, and L bytes
// of JPEG.
#include <cstdint>
#include <memory>
#include <string>

#include "imaging/picture.h"
#include "platform/shared_block.h"
#include "platform/window_endpoint.h"

namespace vx::stream {

inline constexpr std::size_t pictureBlockSize = 500000;

class PictureBlock {
public:
    // Null block when it can't be created.
    explicit PictureBlock(std::uint32_t streamId);
    bool valid() const { return block_ != nullptr; }
    // Encodes `frame` at width x height (the frame's size when either is not
    // positive) and writes header and picture. False when there is nothing
    // to write or it doesn't fit. Asked again for the same frame, size and
    // window, the block already holds the answer and nothing is encoded.
    bool write(const imaging::Picture& frame, int width, int height, platform::WindowHandle ownWindow);

private:
    std::unique_ptr<platform::WritableSharedBlock> block_;
    // What the block holds now (the frame held, so that its address names it alone).
    imaging::Picture written_;
    int writtenWidth_ = 0, writtenHeight_ = 0;
    platform::WindowHandle writtenWindow_ = 0;
};

} // namespace vx::stream
