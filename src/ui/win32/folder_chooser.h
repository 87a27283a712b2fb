#pragma once
// The system's folder picker for the folder buttons of the settings.
#include <windows.h>

#include "dialogs/settings_form.h"

namespace vx::ui::win32 {

// The shell's folder browser over the window in front (else `owner`),
// folders of the file system only, opened at the start folder when it
// exists.
dialogs::FolderChooser systemFolderChooser(HWND owner);

} // namespace vx::ui::win32
