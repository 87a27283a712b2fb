#include "ui/win32/settings_migration_window.h"

namespace vx::ui::win32 {

void offerSettingsMigration(HWND, core::AppState&)
{
}

} // namespace vx::ui::win32
