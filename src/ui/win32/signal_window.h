#pragma once
// The signal dialog (128) over the signal form, on the working copy of one
// signal that the signals and reports dialog hands over.
#include <windows.h>

#include "config/camera_config.h"
#include "state/app_state.h"

namespace vx::ui::win32 {

// With the receiver templates and white lists of the process; "Изменить"
// runs the white list manager over this dialog. True when it ended with OK.
bool runSignalDialog(HWND owner, core::AppState& state, config::SignalConfig& working);

} // namespace vx::ui::win32
