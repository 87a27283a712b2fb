#pragma once
// The stream dialog (120) over the stream form, on the scratch record.
#include <windows.h>

#include "state/app_state.h"

namespace vx::ui::win32 {

// True when it ended with OK; the camera discovery runs the tool from the
// manager's folder.
bool runStreamDialog(HWND owner, core::AppState& state);

} // namespace vx::ui::win32
