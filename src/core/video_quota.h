#pragma once
// The manager's video archive quota: the archive object made from the main
// config, and the quota task of the timer thread.
#include "state/app_state.h"
#include "core/timer_thread.h"

namespace vx::core {

// A fresh archive from videoPath and maxSizeVideoDirectoryMb (full scan)
// replaces the one before, under videoQuotaMutex. Start-up calls it, and so
// does every apply of the main config.
void createVideoQuota(AppState& state);

// One quota pass under videoQuotaMutex; nothing while there is no archive.
void runVideoQuota(AppState& state);

// The timer's quota task: runVideoQuota spawned on the request group and
// never waited for.
void connectQuotaHook(TimerHooks& hooks, AppState& state);

} // namespace vx::core
