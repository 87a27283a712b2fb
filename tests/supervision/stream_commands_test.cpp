// The command texts, the header split, the argument comparison and the
// stream's ID from its file name.
#include <gtest/gtest.h>

#include "config/text_codec.h"
#include "platform/command_line.h"
#include "platform/process_command_line.h"
#include "service_test_support.h"
#include "supervision/stream_channel.h"
#include "supervision/stream_commands.h"
#include "supervision/stream_control.h"

namespace vx::supervision {
namespace {

std::string thrownText(const std::function<void()>& build)
{
    try {
        build();
    } catch (const std::exception& e) {
        return e.what();
    }
    return "";
}

TEST(StreamCommands, TextsAndThrownTexts)
{
    EXPECT_EQ(CommandNotParams("", "quit").text(), "quit");
    EXPECT_EQ(CommandHideWindow("true", "hidevideo").text(), "hidevideo true");
    EXPECT_EQ(CommandHideWindow("  false ", "hideconsole").text(), "hideconsole false");
    EXPECT_EQ(CommandGetImage("320 240", "getimage", 0x1A2Bu).text(), "getimage 320 240 0000000000001A2B");
    EXPECT_EQ(CommandGetImage("-5 x7", "getimage", 0xFFFFFFFFFFFFFFFFull).text(),
              "getimage -5 0 FFFFFFFFFFFFFFFF");
    // The unused parse of the last token as a handle.
    EXPECT_EQ(CommandGetImage("320 ab", "getimage", 1).parsedTarget(), 0xABu);

    EXPECT_EQ(thrownText([] { CommandHideWindow("", "hidevideo"); }), "No current parameters");
    EXPECT_EQ(thrownText([] { CommandHideWindow("a b", "hidevideo"); }), "No current parameters");
    EXPECT_EQ(thrownText([] { CommandGetImage("320", "getimage", 0); }), "Not actual parameters.");

    // The 255-byte buffer: 254 characters and the zero byte.
    const std::string longWord(300, 'q');
    EXPECT_EQ(CommandNotParams("", longWord).text(), std::string(254, 'q'));
    EXPECT_EQ(CommandNotParams("", std::string(254, 'w')).text().size(), 254u);
}

TEST(StreamCommands, DecodeCommandSplitsOnColonsAndLogs)
{
    test::LogCapture log;
    EXPECT_EQ(decodeCommand("getimage:1a2b:1234"), (std::vector<std::string>{"getimage", "1a2b", "1234"}));
    EXPECT_EQ(decodeCommand("::getimage:::7:"), (std::vector<std::string>{"getimage", "7"}));
    EXPECT_TRUE(decodeCommand("").empty());
    EXPECT_TRUE(decodeCommand(":::").empty());
    EXPECT_EQ(log.lines(), std::vector<std::string>(4, "[TRACE]decodeCommand"));
}

TEST(StreamCommands, NormalizeArg)
{
    struct Case {
        const char* in;
        const char* out;
    };
    const Case cases[] = {
        {"/a/b/vx_stream1.json", "\\a\\b\\vx_stream1.json"},
        {"\"/a/b\"", "\\a\\b"},
        {"\"\"\"/a\"\"\"", "\\a"},
        {"\"", "\""},
        {"\"a", "\"a"},
        {"  \t/a b/c \r\n", "\\a b\\c"},
        // Quotes come off before the blanks: a quoted blank stays inside.
        {" \"/a\" ", "\"\\a\""},
        {"\"  /a  \"", "\\a"},
        {"\xC2\xA0/x\xE3\x80\x80", "\\x"},   // no-break and ideographic blanks
        {"C:\\dir/sub", "C:\\dir\\sub"},
        {"", ""},
    };
    for (const Case& c : cases)
        EXPECT_EQ(normalizeArg(c.in), c.out) << c.in;
    EXPECT_TRUE(sameTextIgnoringCase("/Home/Камеры/VX_STREAM1.JSON", "/home/камеры/vx_stream1.json"));
    EXPECT_TRUE(sameTextIgnoringCase("Ёж", "ёж"));
    EXPECT_FALSE(sameTextIgnoringCase("/a/b", "/a/c"));
    EXPECT_FALSE(sameTextIgnoringCase("/a/b", "/a/b "));
}

TEST(StreamCommands, ArgumentsSurviveJoiningAndSplitting)
{
    const std::vector<std::vector<std::string>> lists = {
        {"/opt/vexlane/vxVideoStream", "/a b/configs/vx_stream0.json", "/a b/videos", "/a b/logs/x.txt"},
        {"p", "", "say \"hi\"", "ends\\", "mid\\dle", "\\\\\"", "tab\there"},
        {"/path with blank/p", "\"quoted\"", "путь с пробелом"},
    };
    for (const auto& list : lists)
        EXPECT_EQ(platform::splitCommandLine(platform::joinCommandLine(list)), list);
    EXPECT_EQ(platform::joinCommandLine({"p", "a b", ""}), "p \"a b\" \"\"");
}

TEST(StreamCommands, IdOfAnEntry)
{
    EXPECT_EQ(streamIdFromEntry("vx_stream12.json"), 12u);
    EXPECT_EQ(streamIdFromEntry("vx_stream.json"), 0u);
    EXPECT_EQ(streamIdFromEntry("vx_stream7x9.json"), 7u);
    EXPECT_EQ(streamIdFromEntry("camera.json"), 0xFFFFFFFFu);
    EXPECT_EQ(sharedBlockName(42), "VxVideoStreamSharedMemoryID42");
}

} // namespace
} // namespace vx::supervision
