// A stream's answer to "getimage": the bytes stand in the stream's shared
// picture block, and the manager's handler of the stream's notification
// reads the header and the picture behind it. The header's pieces never
// hold the separator, and only a picture that decodes reaches a record.
#include <algorithm>
#include <cstring>
#include <memory>
#include <random>
#include <string>

#include "fuzz_registry.h"
#include "fuzz_support.h"
#include "platform/shared_block.h"
#include "state/stream_table.h"
#include "supervision/stream_channel.h"

namespace vx::fuzz {
namespace {

constexpr platform::WindowHandle streamWindow = 0x1a2b;

struct AnswerChannel {
    std::uint32_t id = 0;
    std::unique_ptr<platform::WritableSharedBlock> block;
    core::StreamTable table;
};

// One block for the run, under an ID no stream on the machine uses, and a
// table whose record of that ID has the window the corpus headers name.
AnswerChannel& answerChannel()
{
    static AnswerChannel channel;
    static const bool made = [] {
        std::random_device random;
        channel.id = 1500000000u + random() % 500000000u;
        channel.block = platform::createSharedBlock(supervision::sharedBlockName(channel.id),
                                                    supervision::sharedBlockViewSize);
        check(channel.block != nullptr, "the picture block can't be made");
        std::int32_t id = static_cast<std::int32_t>(channel.id);
        channel.table.addStream({}, {}, {}, id, true);
        channel.table.withDrawLock([](std::vector<core::CameraRuntime>& records) {
            records.at(0).channel.window = streamWindow;
        });
        return true;
    }();
    (void)made;
    return channel;
}

void readStreamAnswerInput(const std::uint8_t* data, std::size_t size)
{
    const std::string input = inputText(data, size);
    for (const std::string& piece : supervision::decodeCommand(input))
        check(!piece.empty() && piece.find(':') == std::string::npos, "a header piece holds a separator");

    AnswerChannel& channel = answerChannel();
    channel.table.withDrawLock([](std::vector<core::CameraRuntime>& records) {
        records.at(0).image = {};
        records.at(0).hasImage = false;
    });
    // The input, then zeros over what the last input left.
    static std::size_t written = 0;
    char* view = channel.block->writableData();
    const std::size_t length = std::min(input.size(), supervision::sharedBlockViewSize);
    std::memcpy(view, input.data(), length);
    if (written > length)
        std::memset(view + length, 0, written - length);
    written = length;

    platform::CopyDataMessage message;
    message.cbData = channel.id;
    check(supervision::onCopyData(channel.table, message, [] { return std::int64_t{42}; }),
          "the notification wasn't handled");
    channel.table.withDrawLock([](std::vector<core::CameraRuntime>& records) {
        const core::CameraRuntime& record = records.at(0);
        check(!record.hasImage || (!record.image.empty() && record.lastImageTime == 42),
              "a record took an empty picture");
    });
}

const FuzzRegistration registered{
    "stream_answer", readStreamAnswerInput,
    {"getimage", "getimage:1a2b:", ":1a2b:", "\x89PNG\r\n\x1a\n", "IHDR", "IDAT", "IEND", "\xFF\xD8\xFF", "BM", }};

} // namespace
} // namespace vx::fuzz
