#include <gtest/gtest.h>

#include <fstream>

#include "journal_lines.h"
#include "support/temp_dir.h"

using namespace vx::journal;
using vx::test::TempDir;

TEST(JournalLines, KindsOfTheLogsThreeForms)
{
    EXPECT_EQ(kindOfLine("[2024-05-01 10:20:30][TRACE]x"), kindTrace);
    EXPECT_EQ(kindOfLine("[2024-05-01 10:20:30][CRITICAL]"), kindCritical);
    EXPECT_EQ(kindOfLine("[2024-05-01 10:20:30]Start"), kindPlain);
    EXPECT_EQ(kindOfLine("[2024-05-01 10:20:30][]level 6"), kindPlain);
    EXPECT_EQ(kindOfLine("[2024-05-01 10:20:30] Signal 11 received!"), kindStandardError);
    EXPECT_EQ(kindOfLine("[2024-05-01 10:20:30] [ERROR]x"), kindStandardError);
    EXPECT_EQ(kindOfLine("[2024-05-01 10:20:3"), kindOther);
    EXPECT_EQ(filterLevelOf(kindStandardError), 4);
    EXPECT_EQ(filterLevelOf(kindPlain), 2);
}

TEST(JournalLines, FollowerReadsCompleteLinesAndStartsAgainAfterATruncation)
{
    TempDir dir;
    const auto file = dir.path() / "VexlaneLog.txt";
    LogFollower follower(file);
    EXPECT_TRUE(follower.readNew().lines.empty());   // not there yet

    std::ofstream out(file, std::ios::binary);
    out << "[2024-05-01 10:20:30]Start\r\n[2024-05-01 10:20:30][INFO]\xc0\xe1\xe2" << std::flush;
    auto batch = follower.readNew();
    EXPECT_FALSE(batch.restarted);
    EXPECT_EQ(batch.lines, (std::vector<std::string>{"[2024-05-01 10:20:30]Start"}));

    out << "\r\nthird\n" << std::flush;
    batch = follower.readNew();
    EXPECT_EQ(batch.lines, (std::vector<std::string>{"[2024-05-01 10:20:30][INFO]\xc0\xe1\xe2", "third"}));
    EXPECT_TRUE(follower.readNew().lines.empty());
    out.close();

    // The manager started again: the file is shorter than what was read.
    std::ofstream(file, std::ios::binary | std::ios::trunc) << "new\r\n";
    batch = follower.readNew();
    EXPECT_TRUE(batch.restarted);
    EXPECT_EQ(batch.lines, (std::vector<std::string>{"new"}));
}
