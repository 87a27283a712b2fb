#pragma once
// The white list manager (130) and the dialogs it opens: a new list (133),
// a row of a plain or one-time list (131), a nested list of an extended
// list (132).
#include <windows.h>

#include "state/app_state.h"

namespace vx::ui::win32 {

// "Списки": the white list manager over `owner`, on the process-wide table
// of lists, which it reads anew from ConfigDirectory.
void runWhiteListManager(HWND owner, core::AppState& state);

} // namespace vx::ui::win32
