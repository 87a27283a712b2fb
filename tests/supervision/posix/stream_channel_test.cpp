// The manager's side of the channel: what goes out, and what becomes of a
// stream's answer, good and bad.
#include <gtest/gtest.h>

#include <cstring>
#include <future>
#include <unistd.h>

#include <opencv2/imgcodecs.hpp>

#include "platform/shared_block.h"
#include "supervision/service_test_support.h"
#include "supervision/stream_channel.h"

namespace vx::supervision {
namespace {

// IDs no other test on the machine uses at the same time.
std::uint32_t uniqueId(int k)
{
    return 700000u + static_cast<std::uint32_t>(::getpid() % 100000) * 10u + static_cast<std::uint32_t>(k);
}

struct Answer {
    std::unique_ptr<platform::WritableSharedBlock> block;
    void write(const std::string& header, const std::vector<unsigned char>& picture = {})
    {
        char* data = block->writableData();
        std::memcpy(data, header.c_str(), header.size() + 1);
        if (!picture.empty())
            std::memcpy(data + header.size() + 1, picture.data(), picture.size());
    }
};

std::vector<unsigned char> jpeg(int width, int height)
{
    std::vector<unsigned char> bytes;
    cv::imencode(".jpg", cv::Mat(height, width, CV_8UC3, cv::Scalar(10, 200, 30)), bytes);
    return bytes;
}

platform::CopyDataMessage notification(std::uint32_t id)
{
    platform::CopyDataMessage message;
    message.cbData = id;
    return message;
}

TEST(OnCopyData, StoresThePictureInTheRecordsWhoseWindowTheHeaderNames)
{
    test::LogCapture log;
    const std::uint32_t id = uniqueId(1);
    Answer answer{platform::createSharedBlock(sharedBlockName(id), sharedBlockViewSize)};
    ASSERT_TRUE(answer.block);
    core::StreamTable table;
    for (std::int32_t streamId : {static_cast<std::int32_t>(id), 3, 4, 5}) {
        std::int32_t given = streamId;
        table.addStream({}, {}, {}, given, true);
    }
    table.withDrawLock([](std::vector<core::CameraRuntime>& r) {
        r[0].channel.window = 0xABC;   // the notifying stream's record
        r[1].channel.window = 0xDEF;
        r[2].channel.window = 0xABC;   // a second record with the same window
        r[3].channel.window = 0;
    });
    const auto picture = jpeg(64, 48);
    answer.write("getimage:abc:" + std::to_string(picture.size()), picture);
    EXPECT_TRUE(onCopyData(table, notification(id), [] { return std::int64_t{1234}; }));
    EXPECT_TRUE(table.record(0).hasImage);
    EXPECT_EQ(std::pair(table.record(0).image.width, table.record(0).image.height), std::pair(64, 48));
    EXPECT_EQ(table.record(0).lastImageTime, 1234);
    EXPECT_TRUE(table.record(2).hasImage);
    EXPECT_FALSE(table.record(1).hasImage);
    EXPECT_FALSE(table.record(3).hasImage);
    EXPECT_TRUE(table.record(0).mapping);
    EXPECT_FALSE(table.record(2).mapping);   // the block belongs to the ID's first record

    // An ID no record has: nothing at all.
    const std::size_t before = log.lines().size();
    onCopyData(table, notification(id + 5), {});
    EXPECT_EQ(log.lines().size(), before + 1);   // "Get copy message" only
    EXPECT_EQ(log.lines().back(), "[DEBUG]Get copy message");
}

TEST(OnCopyData, BadAnswersAreDroppedAndKeepTheOldPicture)
{
    test::LogCapture log;
    const std::uint32_t id = uniqueId(2);
    core::StreamTable table;
    std::int32_t given = static_cast<std::int32_t>(id);
    table.addStream({}, {}, {}, given, true);
    table.withDrawLock([](std::vector<core::CameraRuntime>& r) { r[0].channel.window = 0x10; });

    // No block yet: silently nothing, and the next notification tries again.
    onCopyData(table, notification(id), {});
    EXPECT_FALSE(table.record(0).mapping);
    Answer answer{platform::createSharedBlock(sharedBlockName(id), sharedBlockViewSize)};
    ASSERT_TRUE(answer.block);

    const auto picture = jpeg(16, 16);
    const std::string size = std::to_string(picture.size());
    const std::vector<std::string> headers = {
        "getimagex:10:" + size,         // a longer word
        "getimage:10:0",                // zero length: an empty picture
        "getimage:10:499990",           // past the view
        "getimage:10:-4",
        "getimage:10:lots",             // doesn't parse
        "getimage:10:99999999999999",   // out of range
        "getimage:10",                  // a piece missing
        "getimage:10:20",               // not a picture
    };
    for (const std::string& header : headers) {
        answer.write(header, std::vector<unsigned char>(20, 0x55));
        EXPECT_TRUE(onCopyData(table, notification(id), {})) << header;
        EXPECT_FALSE(table.record(0).hasImage) << header;
    }
    // A header without its zero byte within 255 bytes.
    std::memset(answer.block->writableData(), 'g', 400);
    onCopyData(table, notification(id), {});
    EXPECT_FALSE(table.record(0).hasImage);

    const auto lines = log.lines();
    EXPECT_EQ(std::count(lines.begin(), lines.end(), "[DEBUG]CopyMes: getimage empty = true"), 2);
    answer.write("getimage:10:" + size, picture);
    onCopyData(table, notification(id), {});
    EXPECT_TRUE(table.record(0).hasImage);
    EXPECT_EQ(log.lines().back(), "[DEBUG]CopyMes: getimage empty = false");
}

TEST(SendText, FillsTheBufferAndAnswersByTheWindow)
{
    test::RuntimeSandbox sandbox;
    auto window = platform::createWindowEndpoint("vxVideoStream", "cam");
    ASSERT_TRUE(window);
    std::vector<platform::CopyDataMessage> got;
    window->onCopyData = [&](const platform::CopyDataMessage& m) { return got.push_back(m), true; };
    auto serve = [&](const std::function<bool()>& send) {
        auto sender = std::async(std::launch::async, send);
        window->dispatchOne(10000);
        return sender.get();
    };
    const std::string text254(254, 't');
    EXPECT_TRUE(serve([&] { return sendText(window->handle(), text254, 5000); }));
    ASSERT_EQ(got.size(), 1u);
    EXPECT_EQ(got[0].cbData, 255u);
    ASSERT_EQ(got[0].payload.size(), 255u);
    EXPECT_EQ(std::string(got[0].payload.data()), text254);

    core::StreamChannel channel;
    channel.timeoutMs = 5000;
    EXPECT_EQ(hideVideo(channel, "true"), 1);   // no window
    EXPECT_FALSE(sendText(0, "quit", 200));
    channel.window = window->handle();
    EXPECT_EQ(hideVideo(channel, "yes"), 3);
    EXPECT_EQ(serve([&] { return hideConsole(channel, "false") == 0; }), true);
    EXPECT_EQ(std::string(got.back().payload.data()), "hideconsole false");
    EXPECT_EQ(got.size(), 2u);

    core::StreamTable table;
    std::int32_t id = 0;
    table.addStream({}, {}, {}, id, true);
    table.withDrawLock([&](std::vector<core::CameraRuntime>& r) { r[0].channel.window = window->handle(); });
    EXPECT_TRUE(serve([&] { return sendHideCommand(table, 1, 1, 0), true; }));
    EXPECT_EQ(std::string(got.back().payload.data()), "hidevideo false");
    EXPECT_TRUE(serve([&] { return requestImage(table.record(0).channel, 0x5A, 320, 240), true; }));
    EXPECT_EQ(std::string(got.back().payload.data()), "getimage 320 240 000000000000005A");
    sendHideCommand(table, 2, 0, 0);   // no such kind
    sendHideCommand(table, 0, 0, 1);   // no such index
    EXPECT_EQ(got.size(), 4u);

    const platform::WindowHandle gone = window->handle();
    window.reset();
    channel.window = gone;
    EXPECT_EQ(hideVideo(channel, "true"), 2);
}

} // namespace
} // namespace vx::supervision
