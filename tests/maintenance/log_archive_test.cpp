#include "maintenance/log_archive.h"

#include <chrono>
#include <cstdio>
#include <set>

#include <gtest/gtest.h>

#include "maintenance/log_buffer.h"
#include "support/captured_stderr.h"
#include "support/temp_dir.h"

namespace vx::maintenance {
namespace {

namespace fs = std::filesystem;
using test::readFileBytes;
using test::writeFileBytes;

std::set<std::string> namesIn(const fs::path& folder)
{
    std::set<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder))
        names.insert(entry.path().filename().string());
    return names;
}

class LogArchive : public ::testing::Test {
protected:
    fs::path log() const { return dir_.path() / "VexlaneLog.txt"; }
    fs::path archive() const { return dir_.path() / "systemlogsarj"; }
    test::TempDir dir_;
};

TEST_F(LogArchive, ThePreviousRunIsKeptUnderItsStartTime)
{
    const std::string previous = "[2024-04-30 08:01:02]Start\r\n[2024-04-30 08:01:02]1.0.0.1\r\n";
    writeFileBytes(log(), previous);
    test::CapturedStderr err;
    {
        LogBuffer buffer(log(), LogMode::archiveTruncate);
    }
    EXPECT_EQ(err.text(), "");
    EXPECT_EQ(namesIn(archive()), std::set<std::string>{"VexlaneLog_2024-04-30_08-01-02_arj.txt"});
    EXPECT_EQ(readFileBytes(archive() / "VexlaneLog_2024-04-30_08-01-02_arj.txt"), previous);
    // The main file holds only the new run.
    EXPECT_EQ(readFileBytes(log()).find("2024-04-30"), std::string::npos);

    // The same start time again gets a name of its own.
    writeFileBytes(log(), previous);
    EXPECT_EQ(archiveLogFile(log()).filename(), "VexlaneLog_2024-04-30_08-01-02_2_arj.txt");
}

TEST_F(LogArchive, NothingToKeep)
{
    EXPECT_EQ(archiveLogFile(log()), fs::path());
    writeFileBytes(log(), "");
    EXPECT_EQ(archiveLogFile(log()), fs::path());
    EXPECT_FALSE(fs::exists(archive()));
}

// Sets a file's last write to `secondsAgo` before now.
void writtenAgo(const fs::path& file, std::int64_t secondsAgo)
{
    fs::last_write_time(file, std::chrono::file_clock::from_sys(std::chrono::system_clock::now() -
                                                       std::chrono::seconds(secondsAgo)));
}

const std::int64_t day = 86400;

std::string archiveName(const char* format, int a, int b = 0)
{
    char name[64];
    std::snprintf(name, sizeof name, format, a, b);
    return name;
}

TEST_F(LogArchive, RankedByLastWriteAndTheNewArchiveAlwaysStays)
{
    fs::create_directories(archive());
    for (int d = 1; d <= 31; ++d) {
        const fs::path old = archive() / archiveName("VexlaneLog_2024-03-%02d_10-00-00_arj.txt", d);
        writeFileBytes(old, "old");
        writtenAgo(old, (40 - d) * day);
    }
    writeFileBytes(archive() / "other.txt", "not ours");
    // The run before had a wrong clock: its name sorts before all others, yet
    // it is the newest.
    writeFileBytes(log(), "[2019-01-01 00:00:00]Start\r\n");
    EXPECT_EQ(archiveLogFile(log()).filename(), "VexlaneLog_2019-01-01_00-00-00_arj.txt");
    auto names = namesIn(archive());
    EXPECT_EQ(names.size(), 31u);   // 30 archives and the stranger
    EXPECT_TRUE(names.count("other.txt"));
    EXPECT_TRUE(names.count("VexlaneLog_2019-01-01_00-00-00_arj.txt"));
    EXPECT_FALSE(names.count("VexlaneLog_2024-03-01_10-00-00_arj.txt"));
    EXPECT_FALSE(names.count("VexlaneLog_2024-03-02_10-00-00_arj.txt"));
    EXPECT_TRUE(names.count("VexlaneLog_2024-03-03_10-00-00_arj.txt"));

    // A file whose last write is older than all 30: this start's archive
    // stays all the same, beside the newest 30, and pushes none of them out.
    writeFileBytes(log(), "[2018-01-01 00:00:00]Start\r\n");
    writtenAgo(log(), 3650 * day);
    archiveLogFile(log());
    names = namesIn(archive());
    EXPECT_EQ(names.size(), 32u);
    EXPECT_TRUE(names.count("VexlaneLog_2018-01-01_00-00-00_arj.txt"));
    EXPECT_TRUE(names.count("VexlaneLog_2024-03-03_10-00-00_arj.txt"));
}

TEST_F(LogArchive, ACrashLoopKeepsItsFirstFailure)
{
    fs::create_directories(archive());
    for (int d = 1; d <= 20; ++d) {
        const fs::path old = archive() / archiveName("VexlaneLog_2024-04-%02d_09-00-00_arj.txt", d);
        writeFileBytes(old, "a quiet day");
        writtenAgo(old, (31 - d) * day);
    }
    // The first failure an hour ago, then 30 quick restarts that failed as
    // well, five seconds apart; the last of them is the log now archived.
    const fs::path first = archive() / "VexlaneLog_2024-05-01_10-00-00_arj.txt";
    writeFileBytes(first, "the first failure");
    writtenAgo(first, 3600);
    for (int k = 1; k < 30; ++k) {
        const fs::path again = archive() / archiveName("VexlaneLog_2024-05-01_10-%02d-%02d_arj.txt", k * 5 / 60, k * 5 % 60);
        writeFileBytes(again, "again");
        writtenAgo(again, 3600 - 5 * k);
    }
    writeFileBytes(log(), "[2024-05-01 10:02:30]Start\r\n");
    writtenAgo(log(), 3600 - 150);
    archiveLogFile(log());
    const auto names = namesIn(archive());
    EXPECT_TRUE(names.count(first.filename().string()));
    EXPECT_TRUE(names.count("VexlaneLog_2024-05-01_10-02-30_arj.txt"));
    EXPECT_EQ(names.size(), 31u);   // the loop's 30 newest and its first failure
    EXPECT_FALSE(names.count("VexlaneLog_2024-04-20_09-00-00_arj.txt"));
}

TEST_F(LogArchive, AFailureIsReportedAndLeavesTheConstructor)
{
    writeFileBytes(log(), "[2024-04-30 08:01:02]Start\r\n");
    writeFileBytes(archive(), "a file where the folder belongs");
    test::CapturedStderr err;
    EXPECT_THROW(LogBuffer(log(), LogMode::archiveTruncate), fs::filesystem_error);
    EXPECT_EQ(err.text().rfind("Failed to archive log file: ", 0), 0u) << err.text();
    EXPECT_EQ(err.text().back(), '\n');
    // The old file is untouched.
    EXPECT_EQ(readFileBytes(log()), "[2024-04-30 08:01:02]Start\r\n");
}

} // namespace
} // namespace vx::maintenance
