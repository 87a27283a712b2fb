#pragma once
// The settings migration dialog over its form, and the create handler's
// step that offers it.
#include <functional>

#include "state/app_state.h"
#include "dialogs/settings_migration_form.h"
#include "ui/qt/form_window.h"

class QCheckBox;
class QLabel;
class QPushButton;

namespace vx::ui {

class SettingsMigrationWindow : public FormWindow {
public:
    SettingsMigrationWindow(dialogs::SettingsMigrationForm& form, QWidget* parent);

    QLabel* text = nullptr;
    QCheckBox* moveFolders = nullptr;
    QPushButton* ok = nullptr;
    QPushButton* cancel = nullptr;
};

// With an earlier installation in previousInstallPath: the dialog. OK copies
// its configs over this one's and sets migrateFolders from the box; Cancel
// leaves both alone and migrateFolders false.
void offerSettingsMigration(QWidget* parent, core::AppState& state);

} // namespace vx::ui
