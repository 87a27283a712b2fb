#pragma once
// The windows of the white list manager and its three companions. Each only
// lays out its widgets and binds them to its form.
#include <array>
#include <vector>

#include "state/app_state.h"
#include "dialogs/list_entry_form.h"
#include "dialogs/nested_list_form.h"
#include "dialogs/new_white_list_form.h"
#include "dialogs/white_list_manager_form.h"
#include "ui/qt/form_window.h"

class QCheckBox;
class QComboBox;
class QDateEdit;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;
class QTableWidget;
class QTimeEdit;

namespace vx::ui {

class WhiteListManagerWindow : public FormWindow {
public:
    WhiteListManagerWindow(dialogs::WhiteListManagerForm& form, QWidget* parent);

    QComboBox* lists = nullptr;
    QLabel* kindText = nullptr;
    QPushButton* deleteList = nullptr;
    QPushButton* addList = nullptr;
    QPushButton* saveList = nullptr;
    QPushButton* addRow = nullptr;
    QPushButton* deleteRow = nullptr;
    QTableWidget* view = nullptr;
    QPushButton* close = nullptr;   // "Закрыть", the default button
};

class NewWhiteListWindow : public FormWindow {
public:
    NewWhiteListWindow(dialogs::NewWhiteListForm& form, QWidget* parent);

    QLineEdit* name = nullptr;
    std::vector<QRadioButton*> kinds;
    QPushButton* ok = nullptr;
    QPushButton* cancel = nullptr;
};

class ListEntryWindow : public FormWindow {
public:
    ListEntryWindow(dialogs::ListEntryForm& form, QWidget* parent);

    QLineEdit* num = nullptr;
    QLineEdit* car = nullptr;
    QLineEdit* add = nullptr;
    QDateEdit* date1 = nullptr;
    QTimeEdit* time1 = nullptr;
    QDateEdit* date2 = nullptr;
    QTimeEdit* time2 = nullptr;
    QPushButton* ok = nullptr;
    QPushButton* cancel = nullptr;
};

class NestedListWindow : public FormWindow {
public:
    NestedListWindow(dialogs::NestedListForm& form, QWidget* parent);

    QComboBox* list = nullptr;
    std::vector<QRadioButton*> dayRules;
    std::array<QCheckBox*, 7> days{};
    QDateEdit* date = nullptr;
    QTimeEdit* time1 = nullptr;
    QTimeEdit* time2 = nullptr;
    QPushButton* ok = nullptr;
    QPushButton* cancel = nullptr;
};

// The companions as windows, modal over the active dialog.
dialogs::WhiteListCompanions windowCompanions();

// The button "Списки": the manager over `parent`, on the process-wide table
// and manager state.
void runWhiteListManager(QWidget* parent, core::AppState& state);

} // namespace vx::ui
