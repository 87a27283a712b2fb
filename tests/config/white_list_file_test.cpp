#include "config/white_list_file.h"

#include <gtest/gtest.h>

#include <chrono>
#include <regex>

#include "config/config_file.h"
#include "config/text_codec.h"
#include "config/white_list_kept_copy.h"
#include "config_folder.h"

namespace vx::config {
namespace {

using test::CapturedStderr;
using test::ConfigFolder;

WhiteListEntry row(std::int32_t id, const std::string& num, const std::string& car,
                   const std::string& add, const std::string& time1 = "",
                   const std::string& time2 = "") {
    WhiteListEntry entry;
    entry.ID = id;
    entry.num = num;
    entry.car = car;
    entry.add = add;
    entry.time1 = time1;
    entry.time2 = time2;
    return entry;
}

// A table of one list bearing `file`.
WhiteListTable tableWith(const std::string& file) {
    WhiteListTable table;
    WhiteList list;
    list.name = "L";
    list.file = file;
    table.lists.push_back(list);
    return table;
}

// A row as "ID|num|car|add", or with the times "...|time1|time2".
std::string rowText(const WhiteListEntry& e, bool times) {
    std::string text = std::to_string(e.ID) + '|' + e.num + '|' + e.car + '|' + e.add;
    if (times) text += '|' + e.time1 + '|' + e.time2;
    return text;
}

std::vector<std::string> rowTexts(const WhiteList& list) {
    std::vector<std::string> texts;
    for (const WhiteListEntry& e : list.entries) texts.push_back(rowText(e, list.oneTime));
    return texts;
}

// ---- the exact bytes of each form ----

// The bytes of each kind are the golden list files; the one quirk they
// don't show: the times are the one field not converted to UTF-8.
TEST(WhiteListText, OneTimeRowsCarryTheirTimesUnconverted) {
    WhiteList list;
    list.oneTime = true;
    list.entries = {row(4, "A1", utf8ToCp1251("Газель"), "x", "\xC0", "2024-03-02 18:00:00")};
    EXPECT_EQ(whiteListText(list),
              "ID,num,car,add,time1,time2\n"
              "4,A1,Газель,x,\xC0,2024-03-02 18:00:00,\n");
}

// ---- the CSV reader on bad input ----

struct CsvCase {
    const char* what;
    std::string bytes;
    std::int32_t code;
    std::vector<std::string> rows;   // "ID|num|car|add"
    std::string stderrText;
};

TEST(WhiteListFile, CsvReaderTable) {
    const std::vector<CsvCase> cases = {
        {"two rows ending in commas", "ID,num,car,add\n0,A1,B,C,\n1,A2,,,\n", 0,
         {"0|A1|B|C", "1|A2||"}, ""},
        {"a quoted field is taken as it stands", "ID,num,car,add\n0,\"A1\",B,\"C\",\n", 0,
         {"0|\"A1\"|B|\"C\""}, ""},
        {"a row longer than the header keeps its first columns",
         "ID,num,car,add\n0,A1,B,C,D,\n1,A2,,,\n", 0, {"0|A1|B|C", "1|A2||"}, ""},
        {"a byte order mark before the header", "\xEF\xBB\xBFID,num,car,add\n0,A1,,,\n", 0,
         {"0|A1||"}, ""},
        {"fewer fields than the header", "ID,num,car,add\n3,X\n4\n", 0, {"3|X||"}, ""},
        {"a header with fewer columns", "num,ID\nQ,5,\n", 0, {"5|Q||"}, ""},
        {"ID -1 and an empty plate are dropped", "ID,num,car,add\n-1,A,,,\n2,,c,d,\n\n", 0, {}, ""},
        {"a header with an unknown column", "ID,num,plate,add\n0,A,,,\n", 3, {},
         "loadWhiteList parse error in t.list.csv (extended?)\n"},
    };
    ConfigFolder folder;
    for (const CsvCase& c : cases) {
        SCOPED_TRACE(c.what);
        folder.put("t.list.csv", c.bytes);
        WhiteListTable table = tableWith("t.list.csv");
        CapturedStderr err;
        EXPECT_EQ(loadWhiteList(table, folder.dir(), 0), c.code);
        EXPECT_EQ(rowTexts(table.lists[0]), c.rows);
        EXPECT_FALSE(table.lists[0].oneTime);
        EXPECT_EQ(err.text(), c.stderrText);
    }
}

TEST(WhiteListFile, OneTimeHeaderAndTimes) {
    ConfigFolder folder;
    WhiteListTable table = tableWith("t.list.csv");
    folder.put("t.list.csv",
               "ID,num,car,add,time1,time2\n"
               "0,A,,,2024-03-01 08:05:00,bad time text here!!,\n"
               "1,B,,,short,2024-03-02 18:00:00,\n");
    ASSERT_EQ(loadWhiteList(table, folder.dir(), 0), whiteListRead);
    const WhiteList& list = table.lists[0];
    EXPECT_TRUE(list.oneTime);
    ASSERT_EQ(list.entries.size(), 2u);
    EXPECT_EQ(list.entries[0].time2, "bad time text here!!");   // kept as text, parse ignored
    EXPECT_EQ(list.entries[0].time2Parsed.year, 0);

    // Five columns, or the time words elsewhere, make no one-time list.
    for (const char* header : {"ID,num,car,add,time1\n", "ID,num,time1,time2,car,add\n"}) {
        WhiteListTable other = tableWith("t.list.csv");
        folder.put("t.list.csv", header);
        loadWhiteList(other, folder.dir(), 0);
        EXPECT_FALSE(other.lists[0].oneTime) << header;
    }
}

TEST(WhiteListFile, AnUnreadableRowIsSkippedAloneAndWrittenBackAtTheEnd) {
    ConfigFolder folder;
    folder.put("t.list.csv", "ID,num,car,add\r\n0,A,,,\r\nabc,B,,,\r\n,C,,,\r\n99999999999,D,,,\r\n1,E,,,\r\n");
    WhiteListTable table = tableWith("t.list.csv");
    CapturedStderr err;
    ASSERT_EQ(loadWhiteList(table, folder.dir(), 0), whiteListRead);
    EXPECT_EQ(rowTexts(table.lists[0]), (std::vector<std::string>{"0|A||", "1|E||"}));
    EXPECT_EQ(err.text(), "[VX2S] loadWhiteList skips line 3 of t.list.csv: invalid stoi argument\n"
                          "[VX2S] loadWhiteList skips line 4 of t.list.csv: invalid stoi argument\n"
                          "[VX2S] loadWhiteList skips line 5 of t.list.csv: stoi argument out of range\n");
    ASSERT_TRUE(saveWhiteList(table, folder.dir(), 0));
    EXPECT_EQ(folder.bytes("t.list.csv"), "ID,num,car,add\n0,A,,,\n1,E,,,\nabc,B,,,\n,C,,,\n99999999999,D,,,\n");
}

TEST(WhiteListFile, ASaveThatFailsLeavesTheListDirty) {
    ConfigFolder folder;
    WhiteListTable table = tableWith("no-such-folder/t.list.csv");
    table.lists[0].dirty = true;
    EXPECT_FALSE(saveWhiteList(table, folder.dir(), 0));
    EXPECT_TRUE(table.lists[0].dirty);
    EXPECT_FALSE(saveWhiteList(table, folder.dir(), 1));
}

TEST(WhiteListFile, AFileEditedByHandSinceTheReadIsKeptBeforeTheSave) {
    ConfigFolder folder;
    folder.put("t.list.csv", "ID,num,car,add\n0,A,,,\n");
    WhiteListTable table = tableWith("t.list.csv");
    ASSERT_EQ(loadWhiteList(table, folder.dir(), 0), whiteListRead);
    const auto bakFiles = [&folder] {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(folder.file("")))
            if (entry.path().extension() == ".bak") names.push_back(entry.path().filename().string());
        return names;
    };
    {   // Unchanged on disk: no copy.
        CapturedStderr err;
        ASSERT_TRUE(saveWhiteList(table, folder.dir(), 0));
        EXPECT_EQ(err.text(), "");
        EXPECT_TRUE(bakFiles().empty());
    }
    // Edited by hand while the list was on show (its time set apart from
    // the save's, which a coarse clock could share).
    folder.put("t.list.csv", "ID,num,car,add\n0,A,,,\n1,HAND,,,\n");
    std::filesystem::last_write_time(folder.file("t.list.csv"),
                                     std::filesystem::last_write_time(folder.file("t.list.csv")) +
                                         std::chrono::seconds(5));
    table.lists[0].entries.push_back(row(1, "MINE", "", ""));
    CapturedStderr err;
    ASSERT_TRUE(saveWhiteList(table, folder.dir(), 0));
    const std::vector<std::string> kept = bakFiles();
    ASSERT_EQ(kept.size(), 1u);
    EXPECT_TRUE(std::regex_match(kept[0], std::regex(R"(t\.list\.csv\.\d{8}_\d{6}\.bak)"))) << kept[0];
    EXPECT_EQ(folder.bytes(kept[0]), "ID,num,car,add\n0,A,,,\n1,HAND,,,\n");
    EXPECT_EQ(folder.bytes("t.list.csv"), "ID,num,car,add\n0,A,,,\n1,MINE,,,\n");
    EXPECT_EQ(err.text(), "[VX2S] saveWhiteList: t.list.csv changed on disk since it was read; that version "
                          "is kept as " + kept[0] + "\n");
}

TEST(WhiteListFile, KeptCopiesNeverReplaceOneAnother) {
    ConfigFolder folder;
    const std::string path = configFilePath(folder.dir(), "r.json");
    folder.put("r.json", "1");
    const std::time_t moment = 1700000000;
    const std::string stamp = copyTimeStamp(moment);
    EXPECT_TRUE(std::regex_match(stamp, std::regex(R"(\d{8}_\d{6})"))) << stamp;
    for (const char* expected : {"", "_2", "_3"}) {
        const std::optional<std::string> copy = keepCopyOf(path, brokenCopySuffix, moment);
        ASSERT_TRUE(copy);
        EXPECT_EQ(*copy, path + "." + stamp + expected + ".broken");
    }
    EXPECT_FALSE(keepCopyOf(configFilePath(folder.dir(), "none.json"), backupCopySuffix, moment));
}

TEST(WhiteListFile, ResultCodesAndLookUps) {
    ConfigFolder folder;
    WhiteListTable table = tableWith("missing.list.csv");
    EXPECT_EQ(loadWhiteList(table, folder.dir(), -1), whiteListNoSuchIndex);
    EXPECT_EQ(loadWhiteList(table, folder.dir(), 1), whiteListNoSuchIndex);
    EXPECT_EQ(loadWhiteList(table, folder.dir(), 0), whiteListNotOpened);

    table.lists[0].file = "t.list.csv";
    folder.put("t.list.csv", cp1251ToUtf8(utf8ToCp1251("ID,num,car,add\n0,[А]1*2|3,,,\n")));
    ASSERT_EQ(loadWhiteList(table, folder.dir(), 0), whiteListRead);
    ASSERT_EQ(table.lookups.size(), 1u);
    EXPECT_EQ(table.lookups[0].byPlate.count(utf8ToCp1251("А123")), 1u);
    EXPECT_EQ(table.lookups[0].byNormalisedPlate.count("[A]1*2|3"), 1u);
}

// ---- the JSON reader on bad input ----

struct JsonCase {
    const char* what;
    std::string bytes;
    bool extended;
    std::size_t nested;
    std::string stderrText;
};

TEST(WhiteListFile, ExtendedReaderTable) {
    const std::string one = "{\"file\":\"a.list.csv\",\"permitted_access_days\":\"all_days\","
                            "\"permitted_access_time1\":\"00:00:00\",\"permitted_access_time2\":\"23:59:59\"}";
    const std::string typeError = "loadExtendedWhiteList parse error type \n";
    const std::vector<JsonCase> cases = {
        {"good", "{\"lists\":[" + one + "," + one + "]}", true, 2, ""},
        {"truncated", "{\"lists\":[" + one, false, 0,
         "loadExtendedWhiteList parse error at byte " + std::to_string(11 + one.size()) + "\n"},
        {"a file that is a number", "{\"lists\":[" + one + ",{\"file\":5}]}", false, 1, typeError},
        {"a time that isn't one", "{\"lists\":[{\"file\":\"a\",\"permitted_access_days\":\"1\","
                                  "\"permitted_access_time1\":\"xx:00:00\",\"permitted_access_time2\":\"\"}]}",
         false, 0, typeError},
        {"no lists at all", "{}", true, 0, ""},
    };
    ConfigFolder folder;
    for (const JsonCase& c : cases) {
        SCOPED_TRACE(c.what);
        folder.put("e.list.json", c.bytes);
        WhiteListTable table = tableWith("e.list.json");
        CapturedStderr err;
        loadExtendedWhiteList(table, folder.dir(), 0);
        EXPECT_EQ(table.lists[0].extended, c.extended);
        EXPECT_EQ(table.lists[0].lists.size(), c.nested);
        EXPECT_EQ(err.text(), c.stderrText);
    }
    // Read twice, a list holds its nested lists once; a damaged file read
    // after a good one takes none of them away.
    {
        folder.put("e.list.json", cases[0].bytes);
        WhiteListTable twice = tableWith("e.list.json");
        loadExtendedWhiteList(twice, folder.dir(), 0);
        loadExtendedWhiteList(twice, folder.dir(), 0);
        EXPECT_EQ(twice.lists[0].lists.size(), 2u);
        folder.put("e.list.json", cases[1].bytes);
        CapturedStderr err;
        loadExtendedWhiteList(twice, folder.dir(), 0);
        EXPECT_EQ(twice.lists[0].lists.size(), 2u);
    }
    // A file that won't open and an index outside the table change nothing.
    WhiteListTable table = tableWith("none.list.json");
    CapturedStderr err;
    loadExtendedWhiteList(table, folder.dir(), 0);
    loadExtendedWhiteList(table, folder.dir(), 3);
    EXPECT_FALSE(table.lists[0].extended);
    EXPECT_EQ(err.text(), "");
}

} // namespace
} // namespace vx::config
