#pragma once
// Binds the core's commands and the timer thread to the stream control and
// the command channel of supervision.
#include <functional>
#include <memory>

#include "core/process_actions.h"
#include "state/app_state.h"
#include "core/timer_thread.h"
#include "platform/window_endpoint.h"
#include "supervision/stream_control.h"

namespace vx::core {

// videoStart (by position) and videoStop of the global start and stop.
void connectStreamActions(ProcessActions& actions, const std::shared_ptr<supervision::StreamControl>& streams);

// The calendar time in seconds.
std::int64_t calendarSeconds();

// updateCamera: the per-tick pass at the tile size of 320 by 320, finding
// windows by title and spawning each image request on the request group,
// with `hostWindow` (the manager's own window) as the place to answer; `now`
// is the clock it judges a picture's age by. The watch: whatever it did
// before, then restartMissingStreams.
void connectStreamHooks(TimerHooks& hooks, const std::shared_ptr<supervision::StreamControl>& streams,
                        AppState& state, platform::WindowHandle hostWindow,
                        std::function<std::int64_t()> now = calendarSeconds);

} // namespace vx::core
