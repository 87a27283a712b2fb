// The white list manager driven without a window: opening, showing and
// sorting, the read-only list 0, rows, lists and closing.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "dialogs/list_entry_form.h"
#include "dialogs/new_white_list_form.h"
#include "dialogs/white_list_manager_form.h"
#include "dialogs/white_list_view.h"
#include "white_list_fixture.h"

using namespace vx;
using namespace vx::dialogs;
using namespace vx::dialogs::test;

namespace {

std::vector<std::string> column(const TableField& table, std::size_t c)
{
    std::vector<std::string> result;
    for (const auto& row : table.rows)
        result.push_back(row.at(c));
    return result;
}

class ManagerTest : public ::testing::Test {
protected:
    ManagerTest()
    {
        companions.newList = [this](NewWhiteListForm& form) {
            ++opened;
            form.fill();
            form.name.type(newName);
            form.kind.choose(newKind);
            return form.accept();   // a refused add: the operator then cancels
        };
        companions.entry = [this](ListEntryForm& form) {
            ++opened;
            lastRowId = form.rowId();
            form.fill();
            if (entryAction)
                entryAction(form);
            return form.accept();
        };
    }

    WhiteListManagerForm& open()
    {
        form_ = std::make_unique<WhiteListManagerForm>(table, disk.dir(), state, messages, companions, fixedNow);
        form_->fill();
        return *form_;
    }

    vx::test::CapturedStderr quiet;   // the extended list's file is tried as CSV first
    ListsOnDisk disk;
    config::WhiteListTable table;
    WhiteListManagerState state;
    ScriptedMessages messages;
    WhiteListCompanions companions;
    std::string newName = "New";
    std::int32_t newKind = 0;
    std::function<void(ListEntryForm&)> entryAction;
    std::int32_t lastRowId = -2;
    int opened = 0;

private:
    std::unique_ptr<WhiteListManagerForm> form_;
};

} // namespace

TEST_F(ManagerTest, OpeningRereadsTheFilesKeepsListZeroReadOnlyAndHeadersFollowTheKind)
{
    table.lists.resize(7);   // whatever an earlier closing left in memory
    state.sortState = 5;
    WhiteListManagerForm& form = open();
    EXPECT_EQ(form.lists.items, (std::vector<std::string>{"Empty", cp("Въезд"), "Guests", "Ext"}));
    EXPECT_EQ(form.lists.selected, 0);
    EXPECT_EQ(state.sortState, 5);   // list 0 is on show, the sort state stays
    for (ButtonField* button : {&form.deleteList, &form.saveList, &form.addRow, &form.deleteRow})
        EXPECT_FALSE(button->enabled);
    EXPECT_EQ(form.addRow.caption, cp("Добавить  номер"));   // two blanks, as designed

    form.lists.select(ListsOnDisk::plain);
    for (ButtonField* button : {&form.deleteList, &form.saveList, &form.addRow, &form.deleteRow})
        EXPECT_TRUE(button->enabled);
    EXPECT_EQ(state.sortState, 0);
    EXPECT_EQ(form.addRow.caption, cp("Добавить номер"));

    form.lists.select(ListsOnDisk::oneTime);
    EXPECT_EQ(form.rows.rows.at(0),
              (std::vector<std::string>{"0", "K1", "", "", "2024-03-01 08:05:00", "2024-03-02 09:00:00"}));

    form.lists.select(ListsOnDisk::extended);
    EXPECT_EQ(form.addRow.caption, cp("Добавить вложенный список"));
    ASSERT_EQ(form.rows.rows.size(), 3u);
    EXPECT_EQ(form.rows.rows[0], (std::vector<std::string>{"0", cp("Въезд"), cp("Все дни"), "00:00:00", "23:59:59"}));
}

TEST_F(ManagerTest, HeaderClicksSortCopiesByUnsignedBytesAndAnEditOrAnAddKeepsTheSort)
{
    WhiteListManagerForm& form = open();
    form.lists.select(ListsOnDisk::plain);
    form.rows.clickHeader(1);
    EXPECT_EQ(state.sortState, 2);
    // "Я" is byte 0xDF and sorts after every Latin letter.
    EXPECT_EQ(column(form.rows, 1), (std::vector<std::string>{"A300", "B200", cp("Я100")}));
    form.rows.clickHeader(1);
    EXPECT_EQ(state.sortState, 3);
    EXPECT_EQ(column(form.rows, 1), (std::vector<std::string>{cp("Я100"), "B200", "A300"}));
    // A double click edits the row shown there, and headers and sort stay.
    entryAction = [](ListEntryForm& entry) { entry.car.type("Lada"); };
    form.rows.doubleClick(1);
    EXPECT_EQ(lastRowId, 0);    // the ID of the row shown second, B200
    EXPECT_EQ(state.sortState, 3);
    EXPECT_EQ(form.rows.rows[1][2], "Lada");
    // The add button always adds, whatever row was edited last.
    entryAction = [](ListEntryForm& entry) { entry.num.type("c5"); };
    form.addRow.press();
    EXPECT_EQ(lastRowId, -1);
    EXPECT_EQ(form.rows.rows.size(), 4u);
    form.rows.clickHeader(1);   // the third click: ascending again
    EXPECT_EQ(state.sortState, 2);
    form.rows.clickHeader(2);   // a new header always starts ascending
    EXPECT_EQ(state.sortState, 4);
    // The stored order never changes.
    EXPECT_EQ(table.lists[ListsOnDisk::plain].entries[0].num, "B200");

    form.lists.select(ListsOnDisk::oneTime);   // another list: back to the first column
    EXPECT_EQ(state.sortState, 0);
    form.rows.clickHeader(2);
    form.rows.clickHeader(4);   // "Начальное время": the stored order
    EXPECT_EQ(state.sortState, 8);
    EXPECT_EQ(column(form.rows, 1), (std::vector<std::string>{"K1", "E2"}));
}

TEST_F(ManagerTest, DeletedRowsDirtyPlainListsButNotExtendedOnesAndClosingAsksAboutTheFirst)
{
    WhiteListManagerForm& form = open();
    form.lists.select(ListsOnDisk::extended);
    form.rows.select(0);
    form.deleteRow.press();
    EXPECT_EQ(form.rows.rows.size(), 2u);
    EXPECT_TRUE(form.accept());   // nothing dirty: no question
    EXPECT_TRUE(messages.shown.empty());

    form.lists.select(ListsOnDisk::plain);
    form.rows.select(2);
    form.deleteRow.press();
    EXPECT_EQ(column(form.rows, 0), (std::vector<std::string>{"0", "1"}));
    EXPECT_TRUE(table.lists[ListsOnDisk::plain].dirty);

    // Two dirty lists: the question names the first; Escape asks nothing.
    table.lists[ListsOnDisk::oneTime].dirty = true;
    EXPECT_TRUE(form.escape());
    EXPECT_TRUE(messages.shown.empty());
    messages.answer(false);
    EXPECT_FALSE(form.accept());
    messages.answer(true);
    EXPECT_TRUE(form.accept());
    ASSERT_EQ(messages.shown.size(), 2u);
    EXPECT_EQ(messages.shown[0].text, cp("Подвердите, что вы хотите выйти, не сохранив список Въезд!"));
    EXPECT_EQ(messages.shown[0].title, cp("Предупреждение"));
    EXPECT_EQ(messages.shown[0].buttons, MessageButtons::okCancel);
    EXPECT_TRUE(table.lists[ListsOnDisk::plain].dirty);   // nothing was written
}

// What a save writes and says is seen through the windows.
TEST_F(ManagerTest, ASaveClearsTheDirtyFlagOrSaysItFailed)
{
    WhiteListManagerForm& form = open();
    form.lists.select(ListsOnDisk::plain);
    form.rows.select(0);
    form.deleteRow.press();
    form.saveList.press();
    EXPECT_FALSE(table.lists[ListsOnDisk::plain].dirty);
    EXPECT_EQ(messages.shown.back().icon, MessageIcon::information);

    // A file that won't open: the operator is told and the list stays unsaved.
    form.rows.select(0);
    form.deleteRow.press();
    table.lists[ListsOnDisk::plain].file = "no-such-folder/x.list.csv";
    form.saveList.press();
    EXPECT_TRUE(table.lists[ListsOnDisk::plain].dirty);
    EXPECT_EQ(lastText(messages), cp("Не удалось сохранить список Въезд!"));
    EXPECT_EQ(messages.shown.back().icon, MessageIcon::error);
}

TEST_F(ManagerTest, DeletingAListAsksThenLeavesListZeroOnShowWithTheButtonsEnabled)
{
    WhiteListManagerForm& form = open();
    form.lists.select(ListsOnDisk::oneTime);
    const std::string file = table.lists[ListsOnDisk::oneTime].file;
    messages.answer(false);
    form.deleteList.press();
    EXPECT_EQ(table.lists.size(), 4u);
    messages.answer(true);
    form.deleteList.press();
    ASSERT_EQ(messages.shown.size(), 2u);
    EXPECT_EQ(messages.shown[1].text, cp("Вы действительно хотите удалить из файлов список Guests?"));
    EXPECT_EQ(table.lists.size(), 3u);
    EXPECT_FALSE(std::filesystem::exists(std::filesystem::path(disk.dir()) / file));
    EXPECT_EQ(form.lists.selected, 0);
    EXPECT_EQ(state.sortState, 0);
    for (ButtonField* button : {&form.deleteList, &form.saveList, &form.addRow, &form.deleteRow})
        EXPECT_TRUE(button->enabled);

    form.deleteList.press();
    EXPECT_EQ(lastText(messages), cp("Нулевой белый список нельзя удалить!"));
    EXPECT_EQ(messages.shown.back().icon, MessageIcon::error);
    EXPECT_EQ(table.lists.size(), 3u);
}

TEST_F(ManagerTest, ANewListIsSelectedAndOnDiskAndRefusalsHaveTheirMessages)
{
    WhiteListManagerForm& form = open();
    newName = "";   // an empty name passes while no list bears it
    newKind = config::extendedListKind;
    form.addList.press();
    ASSERT_EQ(table.lists.size(), 5u);
    EXPECT_EQ(form.lists.selected, 4);
    EXPECT_TRUE(form.deleteList.enabled);
    EXPECT_FALSE(table.lists[4].dirty);

    newName = "Gate \"1\" \\ 2";   // kept escaped in the table, shown as typed
    form.addList.press();
    EXPECT_EQ(form.lists.items.back(), "Gate \"1\" \\ 2");

    newName = "Guests";
    form.addList.press();
    EXPECT_EQ(table.lists.size(), 6u);
    EXPECT_EQ(lastText(messages), cp("Такое имя белого списка уже существует!"));

    // No free file name: list1 .. list1000 are all taken.
    for (int n = 1; n <= 1000; ++n)
        std::ofstream(std::filesystem::path(disk.dir()) / ("list" + std::to_string(n) + ".list.csv"));
    table.fileCounter = 1;
    newName = "Other";
    newKind = config::plainListKind;
    form.addList.press();
    EXPECT_EQ(lastText(messages), cp("Имя файла белого списка уже занято!"));
    EXPECT_EQ(messages.shown.back().icon, MessageIcon::error);

    table.lists.resize(config::maxWhiteLists);
    form.addList.press();
    EXPECT_EQ(lastText(messages), cp("Слишком много списков!"));
    EXPECT_EQ(table.lists.size(), 1000u);
}
