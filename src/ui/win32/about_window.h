#pragma once
// The About dialog (150).
#include <windows.h>

#include <string>

namespace vx::ui::win32 {

// Shows `text` (Windows-1251, lines split by LF) until OK, Escape or the
// close box.
void showAboutDialog(HWND owner, const std::string& text);

} // namespace vx::ui::win32
