#include <gtest/gtest.h>

#include <fstream>

#include "config/text_codec.h"
#include "journal_filter.h"
#include "platform/text_mode.h"
#include "support/temp_dir.h"

using namespace vx;
using namespace vx::journal;
using vx::test::TempDir;

namespace {

std::string cp1251(const char* utf8)
{
    return config::utf8ToCp1251(utf8);
}

} // namespace

TEST(JournalFilter, LevelAndSearchChooseTheShownLinesAndCopyKeepsTheFilesOrder)
{
    JournalLines lines;
    EXPECT_EQ(lines.append({"[2024-05-01 10:20:30]Start", "[2024-05-01 10:20:30][DEBUG]poll",
                            "[2024-05-01 10:20:31][WARNING]" + cp1251("Поток Въезд не отвечает"),
                            "[2024-05-01 10:20:32] Signal 11 received!", "[2024-05-01 10:20:33][CRITICAL]stop"}),
              5u);
    EXPECT_EQ(lines.countsText(), cp1251("Показано строк: 5 из 5"));

    // ERROR and above: the standard error line counts as ERROR.
    lines.setFilter({4, ""});
    ASSERT_EQ(lines.shownCount(), 2u);
    EXPECT_EQ(lines.entryOfRow(0), 3u);
    EXPECT_EQ(lines.entryOfRow(1), 4u);
    EXPECT_EQ(lines.rowOfEntry(4), 1u);
    EXPECT_FALSE(lines.rowOfEntry(2));
    // New lines pass the filter in force.
    EXPECT_EQ(lines.append({"[2024-05-01 10:20:34][INFO]x", "[2024-05-01 10:20:35][ERROR]y"}), 1u);
    EXPECT_EQ(lines.countsText(), cp1251("Показано строк: 3 из 7"));

    // The search ignores the case of Cyrillic and Latin letters; a plain line
    // counts as INFO.
    lines.setFilter({2, cp1251("въЕЗД")});
    EXPECT_EQ(lines.shownCount(), 1u);
    lines.setFilter({2, "START"});
    EXPECT_EQ(lines.shownCount(), 1u);
    EXPECT_TRUE(containsIgnoringCase(cp1251("ЁЛКА ЇЖАК"), cp1251("ёлка їжак")));

    const std::string end = platform::textLineEnd;
    EXPECT_EQ(lines.copyText({4, 0}), "[2024-05-01 10:20:30]Start" + end + "[2024-05-01 10:20:33][CRITICAL]stop" + end);
    lines.clear();
    EXPECT_EQ(lines.countsText(), cp1251("Показано строк: 0 из 0"));
}

TEST(JournalFilter, TheFolderOfLogs)
{
    // The system log first, even before it exists; the other .txt files by name.
    TempDir dir;
    for (const char* name : {"vxVideoStreamLog1.txt", "perf.txt", "notes.log"})
        std::ofstream(dir.path() / name) << "x";
    std::filesystem::create_directory(dir.path() / "systemlogsarj.txt");
    EXPECT_EQ(logFileNames(dir.path()),
              (std::vector<std::filesystem::path>{"VexlaneLog.txt", "perf.txt", "vxVideoStreamLog1.txt"}));
}
