#include "ui/win32/settings_migration_window.h"

#include "dialogs/settings_migration_form.h"
#include "ui/win32/form_dialog.h"
#include "ui/win32/message_boxes.h"
#include "ui/win32/resource_ids.h"
#include "ui/win32/settings_migration_window_ids.h"

namespace vx::ui::win32 {

void offerSettingsMigration(HWND owner, core::AppState& state)
{
    state.migrateFolders = false;
    if (state.previousInstallPath.empty())
        return;
    Win32Messages messages(owner);
    dialogs::SettingsMigrationForm form(core::installPathOf(state.previousInstallPath), state.baseDirectory,
                                        messages);
    FormDialog dialog;
    dialog.resource = IDD_SETTINGS_MIGRATION;
    dialog.bind = [&form](FormBinding& b) {
        b.bindLabel(IDC_MIGRATION_TEXT, form.text);
        b.bindCheck(IDC_MIGRATION_MOVE_FOLDERS, form.moveFolders);
    };
    if (runFormDialog(owner, form, dialog) == IDOK)
        state.migrateFolders = form.readBack();
}

} // namespace vx::ui::win32
