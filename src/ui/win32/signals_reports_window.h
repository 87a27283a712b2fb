#pragma once
// The signals and reports dialog (126) over its form, on the scratch records.
#include <windows.h>

#include "state/app_state.h"

namespace vx::ui::win32 {

// True when it ended with OK.
bool runSignalsReportsDialog(HWND owner, core::AppState& state);

} // namespace vx::ui::win32
