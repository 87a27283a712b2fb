#include "ui/win32/white_list_windows.h"

namespace vx::ui::win32 {

void runWhiteListManager(HWND, core::AppState&)
{
}

} // namespace vx::ui::win32
