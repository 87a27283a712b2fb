#pragma once
// The entry's steps around the window, shared by both front ends: what runs
// before the window is made, and what runs after its message loop ended.
#include <memory>

#include "platform/named_lock.h"
#include "state/app_state.h"

namespace vx::core {

// One instance per session ("VexlaneOnce"): a second start brings the first
// one's window "Vexlane" to the front and gets false, and the caller exits
// with 1. Otherwise the executable's folder becomes baseDirectory and the
// working directory, the crash capture is installed (a crash leaves
// dumps/VexlaneDump.dmp and exit code 1), the version is read, and the
// settings migration check runs. The lock is held through `instanceLock`.
bool enterProcess(AppState& state, std::unique_ptr<platform::NamedLock>& instanceLock);

// After the loop: "Close" as the last line of the system log, the system
// log and the performance log closed in that order, then the video quota
// object, under its lock (a pass may be running).
void leaveProcess(AppState& state);

} // namespace vx::core
