#include "core/stream_wiring.h"

#include <chrono>

#include "config/text_codec.h"
#include "supervision/service_watch.h"
#include "supervision/stream_channel.h"

namespace vx::core {

std::int64_t calendarSeconds()
{
    return std::chrono::duration_cast<std::chrono::seconds>(std::chrono::system_clock::now().time_since_epoch())
        .count();
}

void connectStreamActions(ProcessActions& actions, const std::shared_ptr<supervision::StreamControl>& streams)
{
    actions.videoStart = [streams](int index) { supervision::videoStart(*streams, index, -1); };
    actions.videoStop = [streams](int index) { supervision::videoStop(*streams, index); };
}

void connectStreamHooks(TimerHooks& hooks, const std::shared_ptr<supervision::StreamControl>& streams,
                        AppState& state, platform::WindowHandle hostWindow, std::function<std::int64_t()> now)
{
    AppState* s = &state;
    hooks.updateCamera = [s, hostWindow, now = std::move(now)] {
        UpdateCameraHooks update;
        update.now = now;
        update.findWindow = [](const std::string& videoName) {
            return platform::findWindow("", config::cp1251ToUtf8(videoName));
        };
        update.requestImage = [hostWindow](const StreamChannel& channel, int width, int height) {
            supervision::spawnRequest(
                [channel, hostWindow, width, height] { supervision::requestImage(channel, hostWindow, width, height); });
        };
        s->streams.updateCamera(update, 320, 320);
    };
    auto previous = hooks.watch;
    hooks.watch = [previous, streams] {
        if (previous)
            previous();
        supervision::restartMissingStreams(*streams);
    };
}

} // namespace vx::core
