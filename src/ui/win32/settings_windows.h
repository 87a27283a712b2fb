#pragma once
// The settings dialogs: settings (136), process control (140), recognition
// service (122), control service (142), and messengers (153) with a
// channel's dialog (154) behind each slot. Each binds its resource's
// controls to its form and does nothing else.
#include <windows.h>

#include "core/settings_commands.h"
#include "dialogs/settings_form.h"

namespace vx::ui::win32 {

// The five settings dialogs as dialogs over `owner`; the settings dialog
// picks folders with the system's folder picker.
core::SettingsDialogs settingsDialogs(HWND owner);
// The same, picking folders with `chooseFolder`.
core::SettingsDialogs settingsDialogs(HWND owner, dialogs::FolderChooser chooseFolder);

} // namespace vx::ui::win32
