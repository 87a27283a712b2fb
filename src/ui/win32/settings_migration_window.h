#pragma once
// The settings migration dialog.
#include <windows.h>

#include "state/app_state.h"

namespace vx::ui::win32 {

// The settings migration offered at start when the program's folder changed.
void offerSettingsMigration(HWND owner, core::AppState& state);

} // namespace vx::ui::win32
