#pragma once
// The settings dialogs: settings (136), process control (140), recognition service (122), control service (142), messengers (153).
#include <windows.h>

#include "core/settings_commands.h"

namespace vx::ui::win32 {

// The five settings dialogs as dialogs over `owner`.
core::SettingsDialogs settingsDialogs(HWND owner);

} // namespace vx::ui::win32
