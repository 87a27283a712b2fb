#include "supervision/stream_channel.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <initializer_list>
#include <stdexcept>

#include "imaging/picture_ops.h"
#include "maintenance/system_log.h"
#include "platform/shared_block.h"
#include "supervision/stream_commands.h"

namespace vx::supervision {
namespace {

using maintenance::logDebug;
using maintenance::logTrace;

int sendHide(const core::StreamChannel& channel, const char* command, const std::string& value)
{
    if (channel.window == 0)
        return 1;
    if (value != "true" && value != "false")
        return 3;
    const CommandHideWindow hide(value, command);
    return sendText(channel.window, hide.text(), channel.timeoutMs) ? 0 : 2;
}

// The record's block: the one it holds, or the block opened now and kept in
// the first record with this ID. Null when there is no such record or the
// block can't be had.
std::shared_ptr<platform::SharedBlock> blockFor(core::StreamTable& table, std::uint32_t streamId)
{
    bool found = false;
    std::shared_ptr<platform::SharedBlock> block;
    auto lookUp = [&](std::vector<core::CameraRuntime>& records) {
        for (core::CameraRuntime& record : records) {
            if (static_cast<std::uint32_t>(record.id) == streamId) {
                found = true;
                // A stream started anew has a new block under the old name.
                if (record.mapping && !block && !record.mapping->current())
                    record.mapping.reset();
                if (!record.mapping && block)
                    record.mapping = block;
                block = record.mapping;
                return;
            }
        }
        found = false;
    };
    // The mapping is written under both locks: the timer thread copies the
    // records under the table lock.
    auto locked = [&] {
        table.withDrawLock([&](std::vector<core::CameraRuntime>& records) {
            std::lock_guard<std::mutex> lock(table.streamTableLock());
            lookUp(records);
        });
    };
    locked();
    if (!found || block)
        return block;
    block = platform::openSharedBlock(sharedBlockName(streamId), sharedBlockViewSize);
    if (!block)
        return nullptr;
    locked();
    return block;
}

} // namespace

std::string sharedBlockName(std::uint32_t streamId)
{
    return "VxVideoStreamSharedMemoryID" + std::to_string(streamId);
}

bool sendText(platform::WindowHandle window, std::string text, int timeoutMs)
{
    platform::CopyDataMessage message;
    message.cbData = static_cast<std::uint32_t>(commandBufferSize);
    message.payload.assign(commandBufferSize, '\0');
    const std::size_t length = std::min(text.size(), commandBufferSize - 1);
    std::memcpy(message.payload.data(), text.data(), length);
    text.clear();
    if (window == 0)
        return false;
    return platform::sendCopyData(window, message, timeoutMs);
}

int hideVideo(const core::StreamChannel& channel, const std::string& value)
{
    return sendHide(channel, "hidevideo", value);
}

int hideConsole(const core::StreamChannel& channel, const std::string& value)
{
    return sendHide(channel, "hideconsole", value);
}

void sendHideCommand(core::StreamTable& table, int kind, int show, int index)
{
    if (!table.validIndex(index))
        return;
    const core::StreamChannel channel = table.record(index).channel;
    const std::string word = show != 0 ? "false" : "true";
    if (kind == 0)
        hideConsole(channel, word);
    else if (kind == 1)
        hideVideo(channel, word);
}

void requestImage(const core::StreamChannel& channel, platform::WindowHandle hostWindow, std::int64_t width,
                  std::int64_t height)
{
    if (channel.window == 0)
        return;
    char parameters[64];
    std::snprintf(parameters, sizeof parameters, "%lld %lld", static_cast<long long>(width),
                  static_cast<long long>(height));
    const CommandGetImage command(parameters, "getimage", hostWindow);
    sendText(channel.window, command.text(), channel.timeoutMs);
}

std::vector<std::string> decodeCommand(const std::string& text)
{
    VX_LOG(logTrace, "decodeCommand");
    std::vector<std::string> pieces;
    std::size_t start = 0;
    while (start <= text.size()) {
        std::size_t end = text.find(':', start);
        if (end == std::string::npos)
            end = text.size();
        if (end > start)
            pieces.push_back(text.substr(start, end - start));
        start = end + 1;
    }
    return pieces;
}

bool onCopyData(core::StreamTable& table, const platform::CopyDataMessage& message,
                const std::function<std::int64_t()>& now)
{
    VX_LOG(logDebug, "Get copy message");
    const std::shared_ptr<platform::SharedBlock> block = blockFor(table, message.cbData);
    if (!block)
        return true;
    const char* view = block->data();
    const std::size_t viewSize = block->size();

    // The header must end within the 255-byte buffer; one that doesn't is
    // dropped rather than read past (the writer's word is not enough when a
    // stream writes garbage).
    const void* zero = std::memchr(view, '\0', std::min(viewSize, commandBufferSize));
    if (!zero)
        return true;
    const std::string header(view, static_cast<const char*>(zero));
    const std::vector<std::string> pieces = decodeCommand(header);
    if (pieces.empty() || pieces[0] != "getimage")
        return true;
    // Guarded: too few pieces, a length that doesn't parse, a negative one or
    // one past the view drops the answer instead of ending the manager.
    if (pieces.size() < 3)
        return true;
    long long length = 0;
    try {
        length = std::stoi(pieces[2]);
    } catch (const std::exception&) {
        return true;
    }
    const std::size_t offset = header.size() + 1;
    if (length < 0 || static_cast<unsigned long long>(length) > viewSize - offset)
        return true;
    std::vector<unsigned char> buffer(view + offset, view + offset + length);

    unsigned long long streamWindow = 0;
    std::sscanf(pieces[1].c_str(), "%llx", &streamWindow);

    // The stream sends a JPEG; PNG is taken too. Anything else is never handed
    // to the decoders: some of the formats they also recognise (DICOM) fault
    // on a damaged picture and would end the manager. A picture that doesn't
    // decode is an empty one.
    const auto startsWith = [&buffer](std::initializer_list<unsigned char> signature) {
        return buffer.size() >= signature.size() && std::equal(signature.begin(), signature.end(), buffer.begin());
    };
    const bool knownFormat = startsWith({0xFF, 0xD8, 0xFF}) || startsWith({0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'});
    // Decoded no larger than the tiles show it, and stretched for them here
    // on the way in, so a drawing only copies it.
    const int side = table.tileSide();
    const imaging::Picture picture =
        knownFormat ? imaging::decodePictureFor(buffer, side, side) : imaging::Picture{};
    VX_LOG(logDebug, std::string("CopyMes: getimage empty = ") + (picture.empty() ? "true" : "false"));
    if (picture.empty())
        return true;
    const imaging::Picture tilePicture = imaging::tilePicture(picture, side);
    const std::int64_t time = now ? now() : 0;
    table.withDrawLock([&](std::vector<core::CameraRuntime>& records) {
        std::lock_guard<std::mutex> lock(table.streamTableLock());
        for (core::CameraRuntime& record : records) {
            if (record.channel.window != 0 && record.channel.window == streamWindow) {
                record.image = picture;
                record.tilePicture = tilePicture;
                record.tilePictureSource = picture;
                record.lastImageTime = time;
                record.hasImage = true;
            }
        }
    });
    return true;
}

} // namespace vx::supervision
