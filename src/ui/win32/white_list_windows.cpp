#include "ui/win32/white_list_windows.h"

#include "config/white_list.h"
#include "dialogs/list_entry_form.h"
#include "dialogs/nested_list_form.h"
#include "dialogs/new_white_list_form.h"
#include "dialogs/white_list_manager_form.h"
#include "ui/win32/form_dialog.h"
#include "ui/win32/message_boxes.h"
#include "ui/win32/resource_ids.h"
#include "ui/win32/white_list_windows_ids.h"

namespace vx::ui::win32 {

namespace {

void bindManager(FormBinding& b, dialogs::WhiteListManagerForm& form)
{
    b.bindList(IDC_WL_LISTS, form.lists);
    b.bindLabel(IDC_WL_KIND_TEXT, form.kindText);
    b.bindButton(IDC_WL_DELETE_LIST, form.deleteList);
    b.bindButton(IDC_WL_ADD_LIST, form.addList);
    b.bindButton(IDC_WL_SAVE_LIST, form.saveList);
    b.bindButton(IDC_WL_ADD_ROW, form.addRow);
    b.bindButton(IDC_WL_DELETE_ROW, form.deleteRow);
    b.bindTable(IDC_WL_ROWS, form.rows);
}

void bindNewList(FormBinding& b, dialogs::NewWhiteListForm& form)
{
    b.bindText(IDC_NEW_LIST_NAME, form.name);
    b.bindChoice({IDC_NEW_LIST_PLAIN, IDC_NEW_LIST_ONE_TIME, IDC_NEW_LIST_EXTENDED}, form.kind);
}

void bindEntry(FormBinding& b, dialogs::ListEntryForm& form)
{
    b.bindText(IDC_ENTRY_NUM, form.num);
    b.bindText(IDC_ENTRY_CAR, form.car);
    b.bindText(IDC_ENTRY_ADD, form.add);
    b.bindDate(IDC_ENTRY_DATE1, form.date1);
    b.bindTime(IDC_ENTRY_TIME1, form.time1);
    b.bindDate(IDC_ENTRY_DATE2, form.date2);
    b.bindTime(IDC_ENTRY_TIME2, form.time2);
}

void bindNested(FormBinding& b, dialogs::NestedListForm& form)
{
    b.bindList(IDC_NESTED_LIST, form.list);
    b.bindChoice({IDC_NESTED_EVERY_DAY, IDC_NESTED_WEEK_DAYS, IDC_NESTED_ONE_DATE}, form.dayRule);
    for (std::size_t d = 0; d < form.days.size(); ++d)
        b.bindCheck(IDC_NESTED_DAY_0 + static_cast<int>(d), form.days[d]);
    b.bindDate(IDC_NESTED_DATE, form.date);
    b.bindTime(IDC_NESTED_TIME1, form.time1);
    b.bindTime(IDC_NESTED_TIME2, form.time2);
}

// The companions open over the manager's window, which `manager` names once
// the manager stands.
dialogs::WhiteListCompanions windowCompanions(const HWND& manager)
{
    dialogs::WhiteListCompanions companions;
    companions.newList = [&manager](dialogs::NewWhiteListForm& form) {
        return runBoundDialog(manager, form, IDD_NEW_WHITE_LIST, bindNewList);
    };
    companions.entry = [&manager](dialogs::ListEntryForm& form) {
        return runBoundDialog(manager, form, IDD_LIST_ENTRY, bindEntry);
    };
    companions.nested = [&manager](dialogs::NestedListForm& form) {
        return runBoundDialog(manager, form, IDD_NESTED_LIST, bindNested);
    };
    return companions;
}

} // namespace

void runWhiteListManager(HWND owner, core::AppState& state)
{
    Win32Messages messages(owner);
    HWND manager = owner;
    dialogs::WhiteListManagerForm form(config::whiteListTable(), state.ConfigDirectory,
                                       dialogs::whiteListManagerState(), messages, windowCompanions(manager));
    FormDialog dialog;
    dialog.resource = IDD_WHITE_LISTS;
    dialog.bind = [&form, &manager](FormBinding& b) {
        manager = b.dialog();
        bindManager(b, form);
    };
    // "Закрыть" is IDOK and asks about unsaved lists; Escape closes at once.
    dialog.mayCancel = [&form] { return form.escape(); };
    runFormDialog(owner, form, dialog);
}

} // namespace vx::ui::win32
