#include "ui/win32/signals_reports_window.h"

namespace vx::ui::win32 {

bool runSignalsReportsDialog(HWND, core::AppState&)
{
    return false;
}

} // namespace vx::ui::win32
