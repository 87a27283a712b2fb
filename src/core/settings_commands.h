#pragma once
// The settings commands of the main window: each opens its dialog, then
// saves what changed and tells the service that must know. The dialogs are
// opened through the window layer, which the caller hands in.
#include <functional>

#include "core/state/app_state.h"

namespace vx::core {

// "Списки" (1045): the white list manager, then the status bar is cleared.
// The manager sends no request of its own.
void editWhiteLists(AppState& state, const std::function<void()>& openManager);

} // namespace vx::core
