// The stream control against a made-up process world: what is started, with
// which command line, what is found, and every log line.
#include <gtest/gtest.h>

#include <cctype>

#include "config/text_codec.h"
#include "platform/paths.h"
#include "platform/process_command_line.h"
#include "service_test_support.h"
#include "supervision/stream_control.h"

namespace vx::supervision {
namespace {

// The stream's image name and the start line of a stream file on this
// platform (".exe" and '\\' on Windows).
const std::string image = streamImageName();
const std::string upperImage = [] {
    std::string upper = image;
    for (char& c : upper) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return upper;
}();
std::string startLine(int file, int logId)
{
    return image + " \"/c/vx_stream" + std::to_string(file) + ".json\" \"/v\" \"/l" + platform::pathSeparator +
           "vxVideoStreamLog" + std::to_string(logId) + ".txt\"";
}

struct World {
    core::StreamTable table;
    StreamControl control;
    std::vector<std::string> started;   // command lines, UTF-8
    std::vector<int> waits;
    bool startFails = false;
    bool ends = false;
    int code = 0;
    std::vector<platform::ProcessEntry> processes;
    std::map<long, std::vector<std::string>> arguments;
    std::vector<std::string> sent;
    long owner = 0;
    std::vector<long> terminated;

    World(std::vector<std::string> entries, std::vector<bool> autoRun = {})
    {
        control.table = &table;
        control.settings = [entries, autoRun] {
            StreamSettings s;
            s.mainConfig.videoStreams = entries;
            s.mainConfig.autoRunStreams = autoRun;
            s.mainConfig.videoPath = "/v";
            s.mainConfig.systemLogPath = "/l";
            s.configDirectory = "/c";
            return s;
        };
        control.start = [this](const platform::ProcessStartInfo& info) -> std::unique_ptr<platform::StartedProcess> {
            started.push_back(info.commandLine);
            if (startFails)
                return nullptr;
            auto p = std::make_unique<test::FakeProcess>();
            p->ends = ends;
            p->code = code;
            return p;
        };
        control.listProcesses = [this] { return processes; };
        control.readCommandLine = [this](long pid) { return platform::joinCommandLine(arguments[pid]); };
        control.sleep = [this](int ms) { waits.push_back(ms); };
        control.sendText = [this](platform::WindowHandle, std::string text, int) {
            sent.push_back(text);
            return true;
        };
        control.windowOwner = [this](platform::WindowHandle) { return owner; };
        control.terminate = [this](long pid) {
            terminated.push_back(pid);
            return true;
        };
    }
    void add(std::int32_t id)
    {
        config::CameraCommon common;
        table.addStream(common, {}, {}, id, true);
    }
    void addProcess(long pid, const std::string& image, std::vector<std::string> args)
    {
        processes.push_back({pid, image, {}});
        arguments[pid] = std::move(args);
    }
};

const std::string early = config::utf8ToCp1251(" - процесс завершился спустя менее 5 секунд после старта");

TEST(VideoStart, ByPositionAndById)
{
    test::LogCapture log;
    World world({"vx_stream0.json", "vx_stream5.json"});
    world.add(0);
    world.add(5);
    videoStart(world.control, 2, -1);   // past the list
    videoStart(world.control, 1, -1);   // position 1, the table's ID 5
    videoStart(world.control, 100000, 5);
    videoStart(world.control, 0, 7);    // no stream 7: position 0 under ID 7
    videoStart(world.control, 100000, 7);
    EXPECT_EQ(world.started,
              (std::vector<std::string>{
                  startLine(5, 5),
                  startLine(5, 5),
                  startLine(0, 7),
              }));
    EXPECT_EQ(log.lines(), (std::vector<std::string>{
                               "[ERROR]videoStart index 2 error!",
                               "[TRACE]videoStart ID5 ok!",
                               "[TRACE]videoStart ID5 ok!",
                               "[TRACE]videoStart ID7 ok!",
                               "[ERROR]videoStart index 100000 error!",
                           }));
}

TEST(VideoStart, EarlyEndsAndFailedStarts)
{
    test::LogCapture log;
    World world({"vx_stream3.json"});
    world.add(3);
    world.ends = true;
    world.code = 0;
    videoStart(world.control, 0, -1);
    world.code = 2;
    videoStart(world.control, 0, -1);
    world.startFails = true;
    videoStart(world.control, 0, -1);
    EXPECT_EQ(log.lines(), (std::vector<std::string>{
                               "[ERROR]" + image + " ID=3 " + early,
                               "[TRACE]videoStart ID3 ok!",
                               "[ERROR]" + image + " ID=3 " + early + config::utf8ToCp1251(" с ошибкой: ") + "2",
                               "[TRACE]videoStart ID3 ok!",
                               "[TRACE]videoStart ID3 ok!",
                           }));
}

TEST(VideoStop, QuitWaitThenForce)
{
    test::LogCapture log;
    World world({});
    world.add(0);
    videoStop(world.control, 0);   // no window yet
    videoStop(world.control, -1);
    world.table.withDrawLock([](std::vector<core::CameraRuntime>& r) {
        r[0].channel.window = 0x77;
        r[0].hasImage = true;
    });
    world.owner = 0;   // left by itself
    videoStop(world.control, 0);
    EXPECT_TRUE(world.table.record(0).hasImage);
    world.owner = 999;
    videoStop(world.control, 0);
    EXPECT_EQ(world.sent, (std::vector<std::string>{"quit", "quit"}));
    EXPECT_EQ(world.waits, (std::vector<int>{1000, 1000}));
    EXPECT_EQ(world.terminated, (std::vector<long>{999}));
    EXPECT_FALSE(world.table.record(0).hasImage);
    // The handle stays: the tile drawing looks the window up again.
    EXPECT_EQ(world.table.record(0).channel.window, 0x77u);
    EXPECT_EQ(log.lines(), (std::vector<std::string>{
                               "[WARNING]videoStop index 0 not found!",
                               "[WARNING]videoStop index -1 not found!",
                               "[INFO]videoStop index 0 made!",
                               "[INFO]videoStop index 0 made!",
                           }));
}

TEST(VideoStop, EndsEveryProcessOfTheStreamAndStartMakesNoSecond)
{
    test::LogCapture log;
    World world({"vx_stream0.json", "vx_stream1.json"});
    world.add(0);
    world.add(1);
    // Two copies of stream 0 (one with no window of the table's) and stream 1.
    world.addProcess(60, image, {image, "/c/vx_stream0.json"});
    world.addProcess(61, image, {image, "/C/VX_STREAM0.JSON"});
    world.addProcess(62, image, {image, "/c/vx_stream1.json"});
    world.control.terminate = [&](long pid) {
        world.terminated.push_back(pid);
        std::erase_if(world.processes, [pid](const platform::ProcessEntry& e) { return e.pid == pid; });
        return true;
    };
    videoStart(world.control, 0, -1);   // runs already: no second copy
    EXPECT_TRUE(world.started.empty());
    videoStop(world.control, 0);        // no window known: found by command line
    EXPECT_EQ(world.terminated, (std::vector<long>{60, 61}));
    world.addProcess(63, image, {image, "/c/vx_stream0.json"});
    world.table.withDrawLock([](std::vector<core::CameraRuntime>& r) { r[0].channel.window = 0x77; });
    world.owner = 999;
    videoRestart(world.control, 0);     // the window's owner and the copy, then one start
    EXPECT_EQ(world.terminated, (std::vector<long>{60, 61, 999, 63}));
    EXPECT_EQ(world.started,
              (std::vector<std::string>{startLine(0, 0)}));
    EXPECT_EQ(log.lines(), (std::vector<std::string>{
                               "[TRACE]videoStart ID0 already running!",
                               "[INFO]videoStop index 0 made!",
                               "[INFO]videoStop index 0 made!",
                               "[TRACE]videoStart ID0 ok!",
                           }));
}

TEST(FindProcessByArg, ComparisonRulesAndOrder)
{
    World world({});
    world.addProcess(10, upperImage, {upperImage, "/c/vx_stream1.json"});   // image case differs
    world.addProcess(11, image, {image});                         // no argument
    world.addProcess(12, image, {image, "\"/C\\VX_stream1.json \""});
    world.addProcess(13, image, {image, "/c/vx_stream1.json"});
    world.addProcess(14, image, {image, "/c/vx_stream2.json"});
    // Blanks at the ends, other slashes, other case, quotes: still the
    // same, and the first in the list wins.
    EXPECT_EQ(findProcessByArg(world.control, image, "/c/vx_stream1.json"), 12);
    EXPECT_EQ(findProcessByArg(world.control, image, "\"/C/Vx_Stream1.JSON\""), 12);
    EXPECT_EQ(findProcessByArg(world.control, image, "/c/vx_stream2.json"), 14);
    EXPECT_EQ(findProcessByArg(world.control, image, "/c/vx_stream3.json"), 0);
    world.processes.erase(world.processes.begin() + 2);
    EXPECT_EQ(findProcessByArg(world.control, image, "/c/vx_stream1.json"), 13);
    // A command line that can't be read matches nothing.
    world.arguments[13] = {};
    EXPECT_EQ(findProcessByArg(world.control, image, "/c/vx_stream1.json"), 0);
}

TEST(RestartMissingStreams, StartsOnlyTheMissingAutorunStreams)
{
    test::LogCapture log;
    // camera.json and vx_stream4.json have no stream in the table (a file
    // that didn't load): the watch leaves them alone, with no log line on
    // every tick.
    World world({"vx_stream0.json", "vx_stream1.json", "vx_stream2.json", "camera.json", "vx_stream4.json"},
                {true, true, false, true, true});
    world.add(0);
    world.add(1);
    world.add(2);
    world.addProcess(50, image, {image, "/C/VX_STREAM0.JSON"});
    restartMissingStreams(world.control);
    EXPECT_EQ(world.started,
              (std::vector<std::string>{startLine(1, 1)}));
    EXPECT_EQ(log.lines(), (std::vector<std::string>{"[TRACE]videoStart ID1 ok!"}));

    // A stream with a start, stop or restart under way is left to it.
    world.started.clear();
    auto busy = world.control.locks->of(1);
    busy->lock();
    restartMissingStreams(world.control);
    busy->unlock();
    EXPECT_TRUE(world.started.empty());
}

TEST(RestartMissingStreams, OneProcessListPerPassAndAnotherAfterEachStart)
{
    World world({"vx_stream0.json", "vx_stream1.json", "vx_stream2.json", "vx_stream3.json"},
                {true, true, true, true});
    for (std::int32_t id = 0; id < 4; ++id)
        world.add(id);
    world.addProcess(70, image, {image, "/c/vx_stream3.json"});
    world.addProcess(71, image, {image, "/c/vx_stream0.json"});
    world.addProcess(72, image, {image, "/c/vx_stream2.json"});
    int lists = 0;
    std::map<long, int> reads;
    world.control.listProcesses = [&] {
        ++lists;
        return world.processes;
    };
    world.control.readCommandLine = [&](long pid) {
        ++reads[pid];
        return platform::joinCommandLine(world.arguments[pid]);
    };
    // Stream 1 is missing: one list serves streams 0 and 1, a fresh one
    // confirms it under the stream's lock; the start of 1 makes stream 2 and
    // 3 be judged on a list taken afterwards.
    restartMissingStreams(world.control);
    EXPECT_EQ(world.started,
              (std::vector<std::string>{startLine(1, 1)}));
    EXPECT_EQ(lists, 3);
    EXPECT_EQ(reads, (std::map<long, int>{{70, 3}, {71, 3}, {72, 3}}));

    // All running: one list and one read of each command line for the pass.
    world.started.clear();
    world.addProcess(73, image, {image, "/c/vx_stream1.json"});
    lists = 0;
    reads.clear();
    restartMissingStreams(world.control);
    EXPECT_TRUE(world.started.empty());
    EXPECT_EQ(lists, 1);
    EXPECT_EQ(reads, (std::map<long, int>{{70, 1}, {71, 1}, {72, 1}, {73, 1}}));
}

} // namespace
} // namespace vx::supervision
