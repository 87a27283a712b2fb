#include "stream_process.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <iostream>
#include <memory>
#include <mutex>
#include <sstream>
#include <string>
#include <vector>

#include "config/camera_config.h"
#include "config/text_codec.h"
#include "maintenance/log_buffer.h"
#include "maintenance/system_log.h"
#include "picture_block.h"
#include "platform/program_arguments.h"
#include "platform/window_endpoint.h"
#include "process_signals.h"
#include "video_recorder.h"
#include "video_source.h"

namespace vx::stream {
namespace {

using maintenance::logError;
using maintenance::logInfo;

std::atomic<bool> terminateRequested{false};

// A path given as UTF-8, in the platform's own form.
std::filesystem::path nativePath(const std::string& utf8)
{
    return std::filesystem::path(std::u8string(utf8.begin(), utf8.end()));
}

struct ImageRequest {
    int width = 0;
    int height = 0;
    platform::WindowHandle target = 0;
};

// How long a picture request waits for the source's newest frame (a link's
// next frame, when the reading thread is waiting for it) before it is
// answered with the frame kept before.
constexpr auto newestFrameWait = std::chrono::milliseconds(300);

struct Commands {
    bool quit = false;
    bool hideVideo = false;
    bool hideConsole = false;
    std::vector<ImageRequest> requests;
};

// One command text as the manager sends it: up to its zero byte.
void takeCommand(const platform::CopyDataMessage& message, Commands& commands, bool ignoreQuit)
{
    const auto end = std::find(message.payload.begin(), message.payload.end(), '\0');
    const std::string text(message.payload.begin(), end);
    std::istringstream in(text);
    std::string word;
    in >> word;
    if (word == "quit") {
        VX_LOG(logInfo, ignoreQuit ? "quit ignored (test switch)" : "quit");
        if (!ignoreQuit)
            commands.quit = true;
    } else if (word == "hidevideo" || word == "hideconsole") {
        std::string value;
        in >> value;
        if (value == "true" || value == "false") {
            (word == "hidevideo" ? commands.hideVideo : commands.hideConsole) = value == "true";
            VX_LOG(logInfo, word + " " + value);
        }
    } else if (word == "getimage") {
        ImageRequest request;
        std::string target;
        if (in >> request.width >> request.height >> target) {
            request.target = std::strtoull(target.c_str(), nullptr, 16);
            commands.requests.push_back(request);
        }
    }
}

} // namespace

int runStream(int argc, char* argv[])
{
    // UTF-8 on every platform: the manager's folders may have Cyrillic names.
    const std::vector<std::string> args = platform::programArguments(argc, argv);
    if (args.size() < 4) {
        std::cerr << "usage: vxVideoStream <camera file> <video folder> <log file>" << std::endl;
        return 2;
    }
    watchEndRequests(terminateRequested);
    maintenance::setSystemLog(
        std::make_unique<maintenance::LogBuffer>(nativePath(args[3]), maintenance::LogMode::appendStartEnd));
    maintenance::systemLog()->setMinLevel(maintenance::logInfo);
    maintenance::attachToStandardError(*maintenance::systemLog());

    config::CameraConfig camera;
    // The config library takes its paths in Windows-1251, as the manager keeps them.
    if (!config::loadCamera(config::utf8ToCp1251(args[1]), camera, 300)) {
        VX_LOG(logError, "Camera file can't be read: " + config::utf8ToCp1251(args[1]));
        maintenance::closeLogs();
        return 1;
    }
    const config::CameraCommon& common = camera.common;
    const std::int32_t id = common.ID;
    VX_LOG(logInfo, "Stream ID=" + std::to_string(id) + " " + common.videoName);

    PictureBlock block(static_cast<std::uint32_t>(id));
    if (!block.valid())
        VX_LOG(logError, "Picture block can't be created");
    auto window = platform::createWindowEndpoint("vxVideoStream", config::cp1251ToUtf8(common.videoName));
    if (!window) {
        VX_LOG(logError, "Window can't be registered");
        maintenance::closeLogs();
        return 1;
    }

    const bool ignoreQuit = [] {
        const char* value = std::getenv("VX_STREAM_TEST_IGNORE_QUIT");
        return value && std::string(value) == "1";
    }();
    // The source and the recorder speak of paths in UTF-8; the log holds Windows-1251.
    const auto sayUtf8 = [](const std::string& text) { VX_LOG(logInfo, config::utf8ToCp1251(text)); };
    Commands commands;
    commands.hideVideo = common.unShowVideo;
    commands.hideConsole = !common.showConsole;
    window->onCopyData = [&](const platform::CopyDataMessage& message) {
        takeCommand(message, commands, ignoreQuit);
        return true;
    };

    // The recorder is fed from the source's thread; the slot is shared with
    // it because a thread stuck in a blocking read may outlive this function.
    struct RecorderSlot {
        std::mutex mutex;
        std::unique_ptr<VideoRecorder> recorder;
    };
    auto recording = std::make_shared<RecorderSlot>();
    if (common.writeVideo) {
        RecorderSettings settings;
        settings.videoRoot = nativePath(args[2]);
        settings.streamId = id;
        settings.chunkSeconds = common.videoChunk;
        settings.width = common.widthWrite;
        settings.height = common.heightWrite;
        recording->recorder =
            std::make_unique<VideoRecorder>(settings, sayUtf8);
    }
    SourceSettings source;
    source.path = config::cp1251ToUtf8(common.videoPath);
    source.tcp = common.tcp;
    source.reconnect = common.reconnect;
    source.secondsToReconnect = common.secondsToReconnect;
    source.attempts = common.attempts;
    source.fps = common.fps;
    // A read waits for two and a half frames of a slow camera, and at least
    // a second: then the link counts as lost.
    if (common.fps > 0.0f)
        source.readTimeoutMs = std::clamp(static_cast<int>(2500.0f / common.fps), 1000, 10000);
    // Frames are converted for the recorder only where it takes them.
    VideoSource::FrameSink sink;
    if (recording->recorder && recording->recorder->takesFrames())
        sink = [recording](const imaging::Picture& frame, double fps) {
            std::lock_guard<std::mutex> lock(recording->mutex);
            if (recording->recorder)
                recording->recorder->write(frame, fps);
        };
    VideoSource video(source, sayUtf8, std::move(sink));

    std::vector<ImageRequest> pending;   // waiting for the newest frame
    auto pendingUntil = std::chrono::steady_clock::now();
    while (!commands.quit && !terminateRequested && !video.failed()) {
        window->dispatchOne(pending.empty() ? 100 : 1);
        if (!commands.requests.empty()) {
            if (pending.empty())
                pendingUntil = std::chrono::steady_clock::now() + newestFrameWait;
            pending.insert(pending.end(), commands.requests.begin(), commands.requests.end());
            commands.requests.clear();
            video.askStill();
        }
        if (pending.empty())
            continue;
        const VideoSource::Still still = video.still(std::chrono::milliseconds(20));
        if (!still.newest && std::chrono::steady_clock::now() < pendingUntil)
            continue;
        // The answers go out after the manager's send was acknowledged, so
        // the manager's sending task never waits on its own answer.
        std::vector<ImageRequest> requests;
        requests.swap(pending);
        for (const ImageRequest& request : requests) {
            if (!block.write(still.picture, request.width, request.height, window->handle()))
                continue;
            platform::CopyDataMessage notification;
            notification.cbData = static_cast<std::uint32_t>(id);
            platform::sendCopyData(request.target, notification, 1000);
        }
    }
    const int exitCode = video.failed() ? sourceLostExitCode : 0;
    {
        std::lock_guard<std::mutex> lock(recording->mutex);
        recording->recorder.reset();   // the last chunk is closed
    }
    // A source stuck in opening or reading a dead link doesn't hold up "quit".
    const bool sourceStopped = video.stop(std::chrono::milliseconds(500));
    if (exitCode != 0)
        VX_LOG(logError, "Stream ID=" + std::to_string(id) + " ends: its video source is lost");
    else
        VX_LOG(logInfo, "Stream ID=" + std::to_string(id) + " ends");
    maintenance::closeLogs();
    if (!sourceStopped)
        std::_Exit(exitCode);
    return exitCode;
}

} // namespace vx::stream
