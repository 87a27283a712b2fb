#include "config/white_list_entries.h"

#include <gtest/gtest.h>

#include "config/white_list_day_rule.h"

namespace vx::config {
namespace {

WhiteListEntry plate(const std::string& num) {
    WhiteListEntry row;
    row.num = num;
    return row;
}

std::vector<std::int32_t> idsOf(const WhiteList& list) {
    std::vector<std::int32_t> ids;
    for (const WhiteListEntry& row : list.entries) ids.push_back(row.ID);
    return ids;
}

// List 0 the default, 1 plain, 2 extended.
WhiteListTable threeLists() {
    WhiteListTable table;
    table.lists.resize(3);
    table.lists[0].name = "Empty";
    table.lists[0].file = "empty.list.csv";
    table.lists[1].name = "Yard";
    table.lists[1].file = "list1.list.csv";
    table.lists[2].name = "Ext";
    table.lists[2].file = "list2.list.json";
    table.lists[2].extended = true;
    return table;
}

TEST(WhiteListEntries, AddGivesTheLargestIdPlusOneAndRefusesARepeatedPlate) {
    WhiteListTable table = threeLists();
    for (const char* num : {"A1", "A2", "A3"}) EXPECT_EQ(addListRow(table, 1, plate(num)), listRowAdded);
    EXPECT_EQ(idsOf(table.lists[1]), (std::vector<std::int32_t>{0, 1, 2}));
    EXPECT_TRUE(table.lists[1].dirty);

    EXPECT_EQ(addListRow(table, 1, plate("A2")), listRowNumberExists);
    EXPECT_EQ(addListRow(table, 1, plate("a2")), listRowAdded);   // exact comparison
    ASSERT_TRUE(deleteListRow(table, 1, 3));
    ASSERT_TRUE(deleteListRow(table, 1, 2));
    EXPECT_EQ(addListRow(table, 1, plate("B")), listRowAdded);
    EXPECT_EQ(idsOf(table.lists[1]), (std::vector<std::int32_t>{0, 1, 2}));   // 2 comes back

    // Reordered by hand: the new row takes neither 1 nor 6.
    table.lists[1].entries = {plate("X"), plate("Y")};
    table.lists[1].entries[0].ID = 5;
    table.lists[1].entries[1].ID = 0;
    EXPECT_EQ(addListRow(table, 1, plate("V")), listRowAdded);
    EXPECT_EQ(idsOf(table.lists[1]), (std::vector<std::int32_t>{5, 0, 6}));

    table.lists[1].entries = {plate("Z")};
    table.lists[1].entries[0].ID = 2147483647;
    EXPECT_EQ(addListRow(table, 1, plate("W")), listRowAdded);
    EXPECT_EQ(table.lists[1].entries[1].ID, -2147483647 - 1);

    EXPECT_EQ(addListRow(table, 2, plate("C")), listRowNoList);
    EXPECT_EQ(addListRow(table, 3, plate("C")), listRowNoList);
    EXPECT_EQ(addListRow(table, -1, plate("C")), listRowNoList);
}

TEST(WhiteListEntries, DeleteByIdInAPlainListByPositionInAnExtendedOne) {
    WhiteListTable table = threeLists();
    addListRow(table, 1, plate("A1"));
    addListRow(table, 1, plate("A2"));
    table.lists[1].dirty = false;
    EXPECT_FALSE(deleteListRow(table, 1, 7));
    EXPECT_FALSE(table.lists[1].dirty);
    EXPECT_TRUE(deleteListRow(table, 1, 0));
    EXPECT_EQ(idsOf(table.lists[1]), std::vector<std::int32_t>{1});
    EXPECT_TRUE(table.lists[1].dirty);

    // The nested lists are resolved again on every change.
    NestedList nested;
    nested.file = "list1.list.csv";
    EXPECT_FALSE(addNestedList(table, 1, nested));   // not an extended list
    ASSERT_TRUE(addNestedList(table, 2, nested));
    ASSERT_TRUE(addNestedList(table, 2, nested));     // twice is allowed
    EXPECT_EQ(table.lists[2].listIndexes, (std::vector<std::int32_t>{1, 1}));
    EXPECT_EQ(table.lists[2].lists[1].name, "Yard");
    table.lists[2].dirty = false;
    nested.file = "empty.list.csv";
    EXPECT_TRUE(replaceNestedList(table, 2, 1, nested));
    EXPECT_TRUE(table.lists[2].dirty);
    EXPECT_EQ(table.lists[2].lists[1].name, "Empty");
    EXPECT_FALSE(replaceNestedList(table, 2, 2, nested));
    EXPECT_FALSE(replaceNestedList(table, 1, 0, nested));

    table.lists[2].dirty = false;
    EXPECT_TRUE(deleteListRow(table, 2, 0));
    EXPECT_FALSE(table.lists[2].dirty);   // deliberately unlike a plain list
    ASSERT_EQ(table.lists[2].lists.size(), 1u);
    EXPECT_EQ(table.lists[2].lists[0].file, "empty.list.csv");
    EXPECT_EQ(table.lists[2].listIndexes, std::vector<std::int32_t>{0});
    EXPECT_FALSE(deleteListRow(table, 2, 1));
    EXPECT_FALSE(deleteListRow(table, 9, 0));
}

struct DayCase {
    const char* text;
    std::int32_t kind;
    std::string days;       // kind 1: the day list it gives back
    std::uint16_t year, month, day;
};

TEST(WhiteListDayRule, Table) {
    const std::vector<DayCase> cases = {
        {"all_days", allDays, "", 0, 0, 0},
        {"1, 3,5", weekDays, "1,3,5", 0, 0, 0},
        {" 6\t,\t0 ", weekDays, "0,6", 0, 0, 0},
        {"3,", weekDays, "3", 0, 0, 0},
        {"06,6", weekDays, "6", 0, 0, 0},
        {"1,7", allDays, "", 0, 0, 0},
        {"1,,3", allDays, "", 0, 0, 0},
        {"", allDays, "", 0, 0, 0},
        {"2024-02-30", oneDate, "", 2024, 2, 30},
        {"1601-01-01", oneDate, "", 1601, 1, 1},
        {"1600-12-31", allDays, "", 0, 0, 0},
        {"2024-13-01", allDays, "", 0, 0, 0},
        {"2024-00-10", allDays, "", 0, 0, 0},
        {"2024/01/10", allDays, "", 0, 0, 0},
        {"2024-01-10 08:00:00", allDays, "", 0, 0, 0},
    };
    for (const DayCase& c : cases) {
        SCOPED_TRACE(c.text);
        const DayRule rule = parseDayRule(c.text);
        EXPECT_EQ(rule.kind, c.kind);
        EXPECT_EQ(dayListText(rule.days), c.days);
        EXPECT_EQ(rule.date.year, c.year);
        EXPECT_EQ(rule.date.month, c.month);
        EXPECT_EQ(rule.date.day, c.day);
    }
    EXPECT_EQ(dayListText({true, false, false, false, false, false, true}), "0,6");
    EXPECT_EQ(dayListText({}), "");
}

} // namespace
} // namespace vx::config
