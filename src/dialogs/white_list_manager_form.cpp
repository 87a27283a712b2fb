#include "dialogs/white_list_manager_form.h"

#include <stdexcept>

#include "config/text_codec.h"
#include "config/white_list_entries.h"
#include "config/white_list_file.h"
#include "config/white_list_registry.h"
#include "dialogs/list_entry_form.h"
#include "dialogs/nested_list_form.h"
#include "dialogs/new_white_list_form.h"
#include "dialogs/white_list_view.h"

namespace vx::dialogs {

using config::utf8ToCp1251;

WhiteListManagerState& whiteListManagerState()
{
    static WhiteListManagerState state;
    return state;
}

WhiteListManagerForm::WhiteListManagerForm(config::WhiteListTable& table, std::string configDirectory,
                                           WhiteListManagerState& state, Messages& messages,
                                           WhiteListCompanions companions, Clock clock)
    : Form(messages), table_(table), configDirectory_(std::move(configDirectory)), state_(state),
      companions_(std::move(companions)), clock_(std::move(clock))
{
    deleteList.caption = utf8ToCp1251("Удалить выбранный");
    addList.caption = utf8ToCp1251("Добавить новый");
    saveList.caption = utf8ToCp1251("Сохранить список");
    addRow.caption = utf8ToCp1251("Добавить  номер");
    deleteRow.caption = utf8ToCp1251("Удалить номер");
    lists.onSelect = [this] { selectList(); };
    rows.onHeaderClick = [this](std::int32_t column) { clickHeader(column); };
    rows.onDoubleClick = [this](std::int32_t row) { editRow(row); };
    deleteList.onPress = [this] { removeList(); };
    addList.onPress = [this] { newList(); };
    saveList.onPress = [this] { save(); };
    addRow.onPress = [this] {
        state_.selectedRowId = -1;   // a new row
        openEntry();
    };
    deleteRow.onPress = [this] { removeRow(); };
}

void WhiteListManagerForm::fill()
{
    // Whatever an earlier closing left unsaved in memory goes here.
    config::loadAllWhiteLists(table_, configDirectory_);
    enableListButtons(false);
    addRow.caption = utf8ToCp1251("Добавить  номер");
    deleteRow.caption = utf8ToCp1251("Удалить номер");
    setHeaders(config::plainListKind);
    rows.clearRows();
    fillListNames();
    // List 0 is on show; the rest of the state (the current list and its
    // kind, the selected row, the sort) stays as the dialog last left it.
    if (!lists.items.empty())
        lists.selected = 0;
}

bool WhiteListManagerForm::accept()
{
    for (const config::WhiteList& list : table_.lists) {
        if (!list.dirty)
            continue;
        // Only the first dirty list is named, however many there are.
        return askOkCancel(messages(), utf8ToCp1251("Подвердите, что вы хотите выйти, не сохранив список ") +
                                           shownListName(list.name) + "!");
    }
    return true;
}

void WhiteListManagerForm::refresh(std::int32_t index, std::int32_t sort)
{
    if (sort != -1)
        state_.sortState = sort;
    fillListNames();
    if (index < 0 || static_cast<std::size_t>(index) >= table_.lists.size())
        return;
    lists.selected = index;
    rows.clearRows();
    const config::WhiteList& list = table_.lists[index];
    const std::int32_t kind = config::whiteListKind(list);
    // The same index keeps the headers as they stand.
    if (index != state_.currentIndex)
        setHeaders(kind);
    rows.rows = whiteListRows(list, state_.sortState);
    kindText.text = whiteListKindText(kind);
    addRow.caption = addRowCaption(kind);
    deleteRow.caption = deleteRowCaption(kind);
    state_.currentIndex = index;
    state_.currentKind = kind;
}

void WhiteListManagerForm::selectList()
{
    // This is what keeps list 0 read-only.
    enableListButtons(lists.selected != 0);
    refresh(lists.selected, 0);
}

void WhiteListManagerForm::clickHeader(std::int32_t column)
{
    if (state_.sortState / 2 == column)
        state_.sortState ^= 1;
    else
        state_.sortState = column * 2;
    refresh(state_.currentIndex, -1);
}

void WhiteListManagerForm::openEntry()
{
    bool ok = false;
    if (state_.currentKind == config::extendedListKind) {
        NestedListForm form(table_, state_.currentIndex, state_.selectedRowId, messages(), clock_);
        ok = companions_.nested && companions_.nested(form);
    } else {
        ListEntryForm form(table_, state_.currentIndex, state_.currentKind, state_.selectedRowId,
                           messages(), clock_);
        ok = companions_.entry && companions_.entry(form);
    }
    if (ok)
        refresh(state_.currentIndex, -1);
}

bool WhiteListManagerForm::selectedId(std::int32_t& id) const
{
    if (rows.selectedRow < 0 || static_cast<std::size_t>(rows.selectedRow) >= rows.rows.size() ||
        rows.rows[rows.selectedRow].empty())
        return false;
    try {
        id = std::stoi(rows.rows[rows.selectedRow][0]);
    } catch (const std::logic_error&) {
        return false;
    }
    return true;
}

void WhiteListManagerForm::editRow(std::int32_t)
{
    std::int32_t id = -1;
    if (!selectedId(id))
        return;
    state_.selectedRowId = id;
    openEntry();
}

void WhiteListManagerForm::removeRow()
{
    std::int32_t id = -1;
    if (!selectedId(id))
        return;
    config::deleteListRow(table_, state_.currentIndex, id);
    refresh(state_.currentIndex, -1);
}

void WhiteListManagerForm::removeList()
{
    const std::int32_t index = lists.selected;
    if (index < 0)
        return;
    if (index == 0) {
        showError(messages(), utf8ToCp1251("Нулевой белый список нельзя удалить!"));
        return;
    }
    if (!askOkCancel(messages(), utf8ToCp1251("Вы действительно хотите удалить из файлов список ") +
                                     listName(index) + "?"))
        return;
    config::deleteWhiteList(table_, configDirectory_, index);
    // The buttons stay as they are, list 0 on show included.
    refresh(0, 0);
}

void WhiteListManagerForm::save()
{
    // A failed write leaves the list unsaved, and the operator is told.
    if (!config::saveWhiteList(table_, configDirectory_, state_.currentIndex)) {
        showError(messages(), utf8ToCp1251("Не удалось сохранить список ") + listName(state_.currentIndex) + "!");
        return;
    }
    showInformation(messages(), utf8ToCp1251("Сохранен список ") + listName(state_.currentIndex) + "!");
}

void WhiteListManagerForm::newList()
{
    NewWhiteListForm form(table_, configDirectory_, messages());
    if (!companions_.newList || !companions_.newList(form))
        return;
    refresh(static_cast<std::int32_t>(table_.lists.size()) - 1, 0);
    enableListButtons(true);
}

void WhiteListManagerForm::setHeaders(std::int32_t kind)
{
    rows.columns = whiteListColumns(kind);
    kindText.text = whiteListKindText(kind);
}

void WhiteListManagerForm::enableListButtons(bool enabled)
{
    deleteList.enabled = enabled;
    saveList.enabled = enabled;
    addRow.enabled = enabled;
    deleteRow.enabled = enabled;
}

std::string WhiteListManagerForm::listName(std::int32_t index) const
{
    if (index < 0 || static_cast<std::size_t>(index) >= table_.lists.size())
        return std::string();
    return shownListName(table_.lists[index].name);
}

void WhiteListManagerForm::fillListNames()
{
    lists.clear();
    for (const config::WhiteList& list : table_.lists)
        lists.items.push_back(shownListName(list.name));
}

} // namespace vx::dialogs
