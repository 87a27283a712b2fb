#pragma once
// What the create handler does apart from building the window, shared by
// both front ends: the configuration steps in their order, and the timer
// thread with its work bound to the services, the streams, the quota and the
// live view.
#include <functional>
#include <memory>

#include "core/process_actions.h"
#include "core/startup.h"
#include "core/stream_wiring.h"
#include "core/timer_thread.h"
#include "core/window_placement.h"
#include "liveview/live_view.h"
#include "liveview/tile_pictures.h"
#include "platform/window_endpoint.h"
#include "state/app_state.h"
#include "supervision/service_context.h"
#include "supervision/stream_control.h"

namespace vx::core {

// Main config, logs, video quota, threshold, streams, the migrated folders,
// recognition, control, receiver samples, white lists, messengers. False
// when the main config failed: its message was shown and the teardown
// posted, and the create handler stops there.
bool runConfigSteps(AppState& state, const StartupHooks& hooks);

// The tile drawing looks a stream's window up by its title.
liveview::DrawHooks tileDrawHooks();

// The timer thread's work as the manager binds it: the services' polls and
// watch, the streams' pass and watch (starts go through `streams`), the
// quota, and every drawing handed to `showZone` on the timer thread.
// `hostWindow` is where the streams answer image requests; `now` is the
// clock a picture's age is judged by.
TimerHooks timerHooks(AppState& state, const std::shared_ptr<supervision::ServiceContext>& services,
                      const std::shared_ptr<supervision::StreamControl>& streams,
                      const std::shared_ptr<liveview::LiveView>& view, platform::WindowHandle hostWindow,
                      std::function<void(liveview::ZonePicture)> showZone,
                      std::function<std::int64_t()> now = calendarSeconds);

// Starts the timer thread on timerHooks, detached. It works on the
// process-wide state and leaves once shuttingDown is set; every drawing of
// the tick is handed to `showZone` on the timer thread (the window passes it
// on to its own thread). `hostWindow` is where the streams answer image
// requests.
void startTimerThread(AppState& state, const std::shared_ptr<supervision::ServiceContext>& services,
                      const std::shared_ptr<liveview::LiveView>& view, platform::WindowHandle hostWindow,
                      std::function<void(liveview::ZonePicture)> showZone);

// The end of an operator's move or resize: the window's frame and its
// monitor go into the live main config, which is saved.
void rememberWindowGeometry(AppState& state, const ProcessActions& actions, const Rect& frame,
                            const std::vector<Rect>& monitors);

} // namespace vx::core
