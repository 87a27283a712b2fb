#pragma once
// The white list manager (130) and the dialogs it opens.
#include <windows.h>

#include "state/app_state.h"

namespace vx::ui::win32 {

// "Списки": the white list manager (130) over `owner`.
void runWhiteListManager(HWND owner, core::AppState& state);

} // namespace vx::ui::win32
