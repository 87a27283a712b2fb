#include "ui/win32/settings_windows.h"

namespace vx::ui::win32 {

core::SettingsDialogs settingsDialogs(HWND)
{
    core::SettingsDialogs dialogs;
    dialogs.settings = [](config::MainConfig&) { return false; };
    dialogs.processControl = [](config::MainConfig&) { return false; };
    dialogs.recognition = [](config::RecognitionSrvConfig&) { return false; };
    dialogs.control = [](config::ControlSrvConfig&) { return false; };
    dialogs.messengers = [](config::MessengersConfig&, bool&) { return false; };
    return dialogs;
}

} // namespace vx::ui::win32
