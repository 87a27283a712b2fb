// The real vxVideoStream on a live RTSP camera (GStreamer's RTSP server on
// loopback, tests/support/rtsp_server.py): pictures flow, stop within two
// seconds of the camera going away, and come back when it returns
// (reconnect on), or the process ends with a non-zero code (reconnect off).
// A link that accepts but never answers neither hangs the stream nor its
// "quit".
#include <gtest/gtest.h>

#include <arpa/inet.h>
#include <csignal>
#include <thread>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include "config/camera_config.h"
#include "config/text_codec.h"
#include "platform/window_endpoint.h"
#include "support/captured_stderr.h"
#include "support/child_process.h"
#include "support/installation.h"
#include "support/temp_dir.h"
#include "supervision/stream_channel.h"

namespace vx::supervision {
namespace {

namespace fs = std::filesystem;

constexpr const char* python = "/usr/bin/python3";

// The RTSP test camera on `port` (0: a free one, then set); nothing when it
// can't be started.
std::unique_ptr<test::ChildProcess> startCamera(int& port, std::string& failure)
{
    auto server = test::ChildProcess::start(python, {VEXLANE_SOURCE_DIR "/tests/support/rtsp_server.py",
                                                     std::to_string(port)});
    if (!server) {
        failure = "python3 can't be started";
        return nullptr;
    }
    const auto line = server->readLine(20000);
    if (!line || line->rfind("ready ", 0) != 0) {
        failure = line ? *line : "no answer from the RTSP server";
        server->kill(SIGKILL);
        server->waitExit(5000);
        return nullptr;
    }
    port = std::stoi(line->substr(6));
    return server;
}

void stopCamera(std::unique_ptr<test::ChildProcess>& camera)
{
    camera->kill(SIGKILL);
    camera->waitExit(5000);
    camera.reset();
}

// A TCP port on loopback that takes connections and never says a word.
class SilentListener {
public:
    SilentListener()
    {
        fd_ = ::socket(AF_INET, SOCK_STREAM, 0);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        if (fd_ >= 0 && ::bind(fd_, reinterpret_cast<sockaddr*>(&address), size) == 0 && ::listen(fd_, 8) == 0 &&
            ::getsockname(fd_, reinterpret_cast<sockaddr*>(&address), &size) == 0)
            port_ = ntohs(address.sin_port);
    }
    ~SilentListener()
    {
        if (fd_ >= 0)
            ::close(fd_);
    }
    SilentListener(const SilentListener&) = delete;
    SilentListener& operator=(const SilentListener&) = delete;
    int port() const { return port_; }

private:
    int fd_ = -1;
    int port_ = 0;
};

std::string linkTo(int port)
{
    return "rtsp://127.0.0.1:" + std::to_string(port) + "/test";
}

class StreamRtsp : public ::testing::Test {
protected:
    test::RuntimeSandbox sandbox;
    test::TempDir root;
    core::StreamTable table;
    std::unique_ptr<platform::WindowEndpoint> manager;
    std::unique_ptr<test::ChildProcess> stream;
    std::int32_t id = 810000 + static_cast<std::int32_t>(::getpid() % 10000) * 10;
    std::string title = "Камера " + std::to_string(id);

    void SetUp() override
    {
        fs::create_directories(root.path() / "videos");
        manager = platform::createWindowEndpoint("Vexlane", "manager");
        ASSERT_TRUE(manager);
        manager->onCopyData = [this](const platform::CopyDataMessage& m) {
            return onCopyData(table, m, [] { return std::int64_t{1}; });
        };
    }
    void TearDown() override
    {
        if (stream) {
            stream->kill(SIGKILL);
            stream->waitExit(5000);
        }
    }
    fs::path logFile() const { return root.path() / ("vxVideoStreamLog" + std::to_string(id) + ".txt"); }

    // Starts the stream on `link` and waits for its window.
    void startStream(const std::string& link, bool reconnect)
    {
        config::CameraConfig camera;
        camera.common.ID = id;
        camera.common.videoName = config::utf8ToCp1251(title);
        camera.common.videoPath = link;
        camera.common.reconnect = reconnect;
        camera.common.secondsToReconnect = 1;
        camera.common.attempts = 0;
        const std::string file = config::cameraFilePath(root.path().string(), id);
        config::saveCamera(file, camera, 1234, 1235);
        std::int32_t tableId = id;
        table.addStream(camera.common, camera.recognition, camera.control, tableId, true);
        stream = test::ChildProcess::start(VEXLANE_BIN_DIR "/vxVideoStream",
                                           {file, (root.path() / "videos").string(), logFile().string()});
        ASSERT_TRUE(stream);
        platform::WindowHandle window = 0;
        ASSERT_TRUE(test::waitFor([&] { return (window = platform::findWindow("", title)) != 0; }, 15000));
        table.withDrawLock([&](std::vector<core::CameraRuntime>& r) { r[0].channel.window = window; });
    }

    // One "getimage" through the real channel; true when a picture came
    // back within `waitMs`.
    bool pictureAnswers(int waitMs)
    {
        table.withDrawLock([](std::vector<core::CameraRuntime>& r) { r[0].hasImage = false; });
        requestImage(table.record(0).channel, manager->handle(), 160, 120);
        const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(waitMs);
        while (std::chrono::steady_clock::now() < end) {
            manager->dispatchOne(20);
            if (table.record(0).hasImage)
                return true;
        }
        return false;
    }
    bool picturesFlow(int timeoutMs)
    {
        return test::waitFor([&] { return pictureAnswers(300); }, timeoutMs);
    }
    // The answers stop within `timeoutMs` and stay away.
    bool picturesStop(int timeoutMs)
    {
        const auto start = std::chrono::steady_clock::now();
        if (!test::waitFor([&] { return !pictureAnswers(250); }, timeoutMs))
            return false;
        EXPECT_LE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(timeoutMs + 300));
        return !pictureAnswers(400) && !pictureAnswers(400);
    }
    std::string log() const { return test::readFileBytes(logFile()); }
};

#define START_CAMERA_OR_SKIP(camera, port)                                       \
    std::string failure;                                                        \
    auto camera = startCamera(port, failure);                                   \
    if (!camera)                                                                \
        GTEST_SKIP() << "the GStreamer RTSP server can't be started: " << failure;

TEST_F(StreamRtsp, LostCameraStopsThePicturesAndReconnectBringsThemBack)
{
    int port = 0;
    START_CAMERA_OR_SKIP(camera, port);
    startStream(linkTo(port), true);
    ASSERT_TRUE(picturesFlow(15000));

    stopCamera(camera);
    EXPECT_TRUE(picturesStop(2000));
    EXPECT_FALSE(stream->waitExit(0));   // still there, trying again

    camera = startCamera(port, failure);
    ASSERT_TRUE(camera) << failure;
    EXPECT_TRUE(picturesFlow(15000));
    EXPECT_NE(log().find("Video source lost: " + linkTo(port)), std::string::npos);
    EXPECT_NE(log().find("Video source: reconnecting, attempt 1: " + linkTo(port)), std::string::npos);

    // "quit" still ends it while the camera is away.
    stopCamera(camera);
    EXPECT_TRUE(picturesStop(2000));
    EXPECT_TRUE(sendText(table.record(0).channel.window, "quit", 1000));
    EXPECT_EQ(stream->waitExit(5000), std::optional<int>(0));
}

// No RTSP server needed: the link is a port that never answers. The open
// gives up after its timeout and, without reconnection, the stream ends; with
// reconnection on, "quit" ends it at once in the middle of an open.
TEST_F(StreamRtsp, SilentLinkTimesOutAndQuitDoesNotWaitForABlockedOpen)
{
    SilentListener silent;
    ASSERT_NE(silent.port(), 0);
    startStream(linkTo(silent.port()), false);
    const auto code = stream->waitExit(20000);
    ASSERT_TRUE(code);
    EXPECT_NE(*code, 0);
    EXPECT_NE(log().find("Video source can't be opened: " + linkTo(silent.port())), std::string::npos);

    std::string name;
    table.removeStream(0, name);
    startStream(linkTo(silent.port()), true);
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    const auto asked = std::chrono::steady_clock::now();
    EXPECT_TRUE(sendText(table.record(0).channel.window, "quit", 1000));
    EXPECT_EQ(stream->waitExit(10000), std::optional<int>(0));
    EXPECT_LT(std::chrono::steady_clock::now() - asked, std::chrono::seconds(2));
}

} // namespace
} // namespace vx::supervision
