#pragma once
// The recognition dialog (124) over the recognition form, on the scratch records.
#include <windows.h>

#include "state/app_state.h"

namespace vx::ui::win32 {

// True when it ended with OK.
bool runRecognitionDialog(HWND owner, core::AppState& state);

} // namespace vx::ui::win32
