#pragma once
// The white list manager: the one place where lists are created, removed,
// filled and saved. It works on the table itself, with no copy and no Cancel;
// every action lands in the table at once. Closing by "Закрыть" asks before
// leaving unsaved changes; Escape closes at once.
#include <cstdint>
#include <functional>
#include <string>

#include "config/white_list.h"
#include "dialogs/form.h"
#include "dialogs/form_fields.h"
#include "dialogs/picker_text.h"

namespace vx::dialogs {

class NewWhiteListForm;
class ListEntryForm;
class NestedListForm;

// The manager's state, kept for the life of the process.
struct WhiteListManagerState {
    std::int32_t currentIndex = 0;     // the list on show
    std::int32_t currentKind = 0;      // plain, one-time or extended
    std::int32_t selectedRowId = -1;   // for the entry dialogs; -1 adds
    std::int32_t sortState = 0;        // column * 2, plus 1 for descending
};
WhiteListManagerState& whiteListManagerState();

// How the manager opens its companions, modal over it; each gives true when
// its dialog closed with OK.
struct WhiteListCompanions {
    std::function<bool(NewWhiteListForm&)> newList;
    std::function<bool(ListEntryForm&)> entry;
    std::function<bool(NestedListForm&)> nested;
};

class WhiteListManagerForm : public Form {
public:
    WhiteListManagerForm(config::WhiteListTable& table, std::string configDirectory,
                         WhiteListManagerState& state, Messages& messages,
                         WhiteListCompanions companions, Clock clock = localNow);

    // The opening: re-reads the registry and all lists, plain headers, the
    // names into the combo box, list 0 selected; the state (current list and
    // kind, selected row, sort) stays.
    void fill() override;
    // "Закрыть": true closes; with a dirty list only after OK to the question.
    bool accept() override;
    // Escape closes at once.
    bool escape() { return true; }

    // Shows list `index`; a `sort` of -1 keeps the sort state.
    void refresh(std::int32_t index, std::int32_t sort);

    ListField lists;          // "Выбрать белый список"
    LabelField kindText;
    ButtonField deleteList;   // "Удалить выбранный"
    ButtonField addList;      // "Добавить новый"
    ButtonField saveList;     // "Сохранить список"
    ButtonField addRow;       // "Добавить  номер"
    ButtonField deleteRow;    // "Удалить номер"
    TableField rows;

private:
    void selectList();
    void clickHeader(std::int32_t column);
    void openEntry();
    void editRow(std::int32_t row);
    void removeRow();
    void removeList();
    void save();
    void newList();
    void setHeaders(std::int32_t kind);
    void enableListButtons(bool enabled);
    void fillListNames();
    bool selectedId(std::int32_t& id) const;
    std::string listName(std::int32_t index) const;

    config::WhiteListTable& table_;
    std::string configDirectory_;
    WhiteListManagerState& state_;
    WhiteListCompanions companions_;
    Clock clock_;
};

} // namespace vx::dialogs
