// The row dialog and the nested list dialog driven without a window.
#include <gtest/gtest.h>

#include "config/white_list_registry.h"
#include "dialogs/list_entry_form.h"
#include "dialogs/nested_list_form.h"
#include "white_list_fixture.h"

using namespace vx;
using namespace vx::dialogs;
using namespace vx::dialogs::test;

namespace {

class EntryTest : public ::testing::Test {
protected:
    EntryTest() { config::loadAllWhiteLists(table, disk.dir()); }

    ListEntryForm& entry(std::int32_t list, std::int32_t rowId)
    {
        entry_ = std::make_unique<ListEntryForm>(table, list, config::whiteListKind(table.lists[list]), rowId,
                                                 messages, fixedNow);
        entry_->fill();
        return *entry_;
    }
    NestedListForm& nested(std::int32_t position)
    {
        nested_ = std::make_unique<NestedListForm>(table, ListsOnDisk::extended, position, messages, fixedNow);
        nested_->fill();
        return *nested_;
    }
    const config::WhiteList& list(std::int32_t index) const { return table.lists[index]; }

    vx::test::CapturedStderr quiet;
    ListsOnDisk disk;
    config::WhiteListTable table;
    ScriptedMessages messages;

private:
    std::unique_ptr<ListEntryForm> entry_;
    std::unique_ptr<NestedListForm> nested_;
};

} // namespace

TEST_F(EntryTest, ANewRowIsUpperCasedAndEmptyAndRepeatedNumbersAreRefused)
{
    ListEntryForm& form = entry(ListsOnDisk::plain, -1);
    form.num.type(cp("а123вс 77x"));
    form.car.type("lada");
    EXPECT_TRUE(form.accept());
    const config::WhiteListEntry& added = list(ListsOnDisk::plain).entries.back();
    EXPECT_EQ(added.ID, 3);
    EXPECT_EQ(added.num, cp("А123ВС 77X"));
    EXPECT_EQ(added.car, "lada");               // only the number is raised
    // The pickers' values go into the row in memory, plain list or not.
    EXPECT_EQ(added.time1, "2025-06-14 10:20:30");
    EXPECT_TRUE(list(ListsOnDisk::plain).dirty);

    // Empty and repeated numbers are refused only where they should be.
    ListEntryForm& empty = entry(ListsOnDisk::plain, -1);
    EXPECT_FALSE(empty.accept());
    ASSERT_EQ(messages.shown.size(), 1u);
    EXPECT_EQ(messages.shown[0].text, cp("Номер не может быть пустым!"));
    EXPECT_EQ(messages.shown[0].title, cp("Сообщение"));

    ListEntryForm& twice = entry(ListsOnDisk::plain, -1);
    twice.num.type("b200");   // upper-cased first, then compared
    EXPECT_FALSE(twice.accept());
    EXPECT_EQ(messages.shown.back().text, cp("Такой номер уже существует!"));

    // An edit may give two rows one number, and makes the list dirty.
    table.lists[ListsOnDisk::plain].dirty = false;
    ListEntryForm& edit = entry(ListsOnDisk::plain, 2);
    edit.num.type("B200");
    EXPECT_TRUE(edit.accept());
    EXPECT_EQ(list(ListsOnDisk::plain).entries[2].num, "B200");
    EXPECT_TRUE(list(ListsOnDisk::plain).dirty);

    // The row went away while the dialog was open.
    ListEntryForm& gone = entry(ListsOnDisk::plain, 1);
    config::deleteListRow(table, ListsOnDisk::plain, 1);
    gone.num.type("X1");
    EXPECT_FALSE(gone.accept());
    EXPECT_EQ(messages.shown.back().text, cp("Проблема с редактированием элемента списка"));
}

TEST_F(EntryTest, AFieldThatWouldSplitItsRowIsRefused)
{
    const std::pair<const char*, const char*> cases[] = {
        {"Лада, белая", "Поле не может содержать запятую!"},
        {"line\nbreak", "Поле не может содержать перевод строки!"},
        {"cr\r", "Поле не может содержать перевод строки!"},
    };
    for (const auto& [text, message] : cases) {
        SCOPED_TRACE(text);
        ListEntryForm& form = entry(ListsOnDisk::plain, 0);
        form.car.type(cp(text));
        EXPECT_EQ(acceptMessage(form, messages), cp(message));
    }
    EXPECT_EQ(list(ListsOnDisk::plain).entries[0].car, "Volvo");
}

TEST_F(EntryTest, AFreshNestedListTakesEveryDayOverTheWholeDayAndRefusalsShowTheLastFailingTest)
{
    NestedListForm& form = nested(-1);
    // All lists but the extended ones, the zero list and one-time lists too.
    EXPECT_EQ(form.list.items, (std::vector<std::string>{"Empty", cp("Въезд"), "Guests"}));
    EXPECT_EQ(form.list.selected, 0);
    form.dayRule.choose(weekDaysChoice);
    EXPECT_FALSE(form.accept());   // the zero list and no day: the day wins
    EXPECT_EQ(lastText(messages), cp("Должен быть выделен хотя бы один день недели!"));
    form.days[3].click();
    EXPECT_FALSE(form.accept());
    EXPECT_EQ(lastText(messages), cp("Empty список не может быть использован в расширенном!"));
    EXPECT_EQ(messages.shown.size(), 2u);
    // Marks don't count with another choice.
    form.dayRule.choose(everyDayChoice);
    form.list.select(2);
    EXPECT_TRUE(form.accept());
    const config::WhiteList& ext = list(ListsOnDisk::extended);
    EXPECT_EQ(ext.lists.back().file, list(ListsOnDisk::oneTime).file);
    EXPECT_EQ(ext.lists.back().permitted_access_days, "all_days");
    EXPECT_EQ(ext.lists.back().permitted_access_time1, "00:00:00");
    EXPECT_EQ(ext.lists.back().permitted_access_time2, "23:59:59");
    EXPECT_TRUE(ext.dirty);
}

TEST_F(EntryTest, EditingANestedListShowsItsRuleAndReplacesItQuietly)
{
    table.lists[ListsOnDisk::extended].dirty = false;
    NestedListForm& date = nested(2);
    EXPECT_EQ(date.list.selected, 2);
    EXPECT_EQ(date.dayRule.chosen, oneDateChoice);
    EXPECT_EQ(dateText(date.date.value), "2024-03-01");
    EXPECT_EQ(timeText(date.time1.value), "08:05:00");
    date.date.pick(at(2026, 1, 9));
    date.time2.pick(at(0, 0, 0, 22));
    EXPECT_TRUE(date.accept());
    const config::NestedList& stored = list(ListsOnDisk::extended).lists[2];
    EXPECT_EQ(stored.permitted_access_days, "2026-01-09");
    EXPECT_EQ(stored.permitted_access_time1, "08:05:00");
    EXPECT_EQ(stored.permitted_access_time2, "22:00:00");   // the window may cross midnight
    EXPECT_TRUE(list(ListsOnDisk::extended).dirty);
}
