#include "core/create_steps.h"

#include <thread>

#include "config/text_codec.h"
#include "config/white_list_registry.h"
#include "core/service_wiring.h"
#include "core/startup_streams.h"
#include "core/stream_wiring.h"
#include "core/timer_thread.h"
#include "core/video_quota.h"
#include "supervision/stream_control.h"

namespace vx::core {

bool runConfigSteps(AppState& state, const StartupHooks& hooks)
{
    if (!loadMainConfigStep(state, hooks))
        return false;
    openLogs(state);
    createVideoQuota(state);
    setLogThreshold(state);
    loadStreams(state);
    migrateFoldersStep(state, hooks);
    loadRecognitionConfigStep(state, hooks);
    loadControlConfigStep(state, hooks);
    loadReceiverSamplesStep(state);
    config::loadAllWhiteLists(config::whiteListTable(), state.ConfigDirectory);
    loadMessengersStep(state);
    return true;
}

liveview::DrawHooks tileDrawHooks()
{
    liveview::DrawHooks hooks;
    hooks.findWindow = [](const std::string& videoName) {
        return platform::findWindow("", config::cp1251ToUtf8(videoName));
    };
    return hooks;
}

TimerHooks timerHooks(AppState& state, const std::shared_ptr<supervision::ServiceContext>& services,
                      const std::shared_ptr<supervision::StreamControl>& streams,
                      const std::shared_ptr<liveview::LiveView>& view, platform::WindowHandle hostWindow,
                      std::function<void(liveview::ZonePicture)> showZone, std::function<std::int64_t()> now)
{
    AppState* s = &state;
    TimerHooks hooks;
    connectServiceHooks(hooks, services, *s);
    connectStreamHooks(hooks, streams, *s, hostWindow, std::move(now));
    connectQuotaHook(hooks, *s);
    hooks.drawCamera = [s, view, showZone = std::move(showZone)] {
        liveview::ZonePicture zone = liveview::drawCamera(s->streams, *view, -1, -1, tileDrawHooks());
        if (showZone)
            showZone(std::move(zone));
    };
    return hooks;
}

void startTimerThread(AppState& state, const std::shared_ptr<supervision::ServiceContext>& services,
                      const std::shared_ptr<liveview::LiveView>& view, platform::WindowHandle hostWindow,
                      std::function<void(liveview::ZonePicture)> showZone)
{
    AppState* s = &state;
    std::thread([s, services, view, hostWindow, showZone = std::move(showZone)]() mutable {
        runTimerThread(*s, timerHooks(*s, services, supervision::makeStreamControl(*s), view, hostWindow,
                                      std::move(showZone)));
    }).detach();
}

void rememberWindowGeometry(AppState& state, const ProcessActions& actions, const Rect& frame,
                            const std::vector<Rect>& monitors)
{
    const Placement p = rememberPlacement(frame, monitors);
    config::MainConfig& c = state.liveMainConfig;
    c.xWindow = p.xWindow;
    c.yWindow = p.yWindow;
    c.wWindow = p.wWindow;
    c.hWindow = p.hWindow;
    c.display = p.display;
    if (actions.saveMainConfig)
        actions.saveMainConfig();
}

} // namespace vx::core
