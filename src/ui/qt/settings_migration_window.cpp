#include "ui/qt/settings_migration_window.h"

#include <QCheckBox>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "ui/qt/dialog_rows.h"
#include "ui/qt/message_boxes.h"
#include "ui/qt/qt_text.h"

namespace vx::ui {

SettingsMigrationWindow::SettingsMigrationWindow(dialogs::SettingsMigrationForm& form, QWidget* parent)
    : FormWindow(form, parent)
{
    setWindowTitle(literal("Помощь в переносе настроек из последней запущенной программы"));
    auto* layout = new QVBoxLayout(this);
    text = new QLabel(this);
    text->setWordWrap(true);
    layout->addWidget(text);
    moveFolders = new QCheckBox(literal("Перенести папки журналов, отчётов и видео в папку этой программы"), this);
    layout->addWidget(moveFolders);
    layout->addLayout(okCancelButtons(this, ok, cancel));
    binding().bindLabel(text, form.text);
    binding().bindCheck(moveFolders, form.moveFolders);
    setMinimumWidth(560);
}

void offerSettingsMigration(QWidget* parent, core::AppState& state)
{
    state.migrateFolders = false;
    if (state.previousInstallPath.empty())
        return;
    QtMessages messages(parent);
    dialogs::SettingsMigrationForm form(core::installPathOf(state.previousInstallPath), state.baseDirectory,
                                        messages);
    SettingsMigrationWindow window(form, parent);
    if (window.run() == QDialog::Accepted)
        state.migrateFolders = form.readBack();
}

} // namespace vx::ui
