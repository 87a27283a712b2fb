#pragma once
// "Start all" and "stop all" of the main dialog.
#include "core/process_actions.h"
#include "state/app_state.h"

namespace vx::core {

// Restarts the three services, marks the system as running and starts every
// planned stream. Every task's future goes into pendingTasks.
void startAll(AppState& state, const ProcessActions& actions);
// Stops the three services and every stream, planned or not, and marks the
// system as stopped.
void stopAll(AppState& state, const ProcessActions& actions);

} // namespace vx::core
