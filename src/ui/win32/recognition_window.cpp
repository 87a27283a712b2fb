#include "ui/win32/recognition_window.h"

namespace vx::ui::win32 {

bool runRecognitionDialog(HWND, core::AppState&)
{
    return false;
}

} // namespace vx::ui::win32
