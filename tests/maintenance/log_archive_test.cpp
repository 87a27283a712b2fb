#include "maintenance/log_archive.h"

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

TEST_F(LogArchive, AFileWithoutAStampIsNamedByItsLastWrite)
{
    writeFileBytes(log(), "no stamp here\n");
    const fs::path kept = archiveLogFile(log());
    const std::string name = kept.filename().string();
    EXPECT_EQ(name.size(), std::string("VexlaneLog_2024-04-30_08-01-02_arj.txt").size()) << name;
    EXPECT_EQ(name.rfind("VexlaneLog_", 0), 0u);
    EXPECT_EQ(readFileBytes(kept), "no stamp here\n");
}

TEST_F(LogArchive, TheNewestThirtyStay)
{
    fs::create_directories(archive());
    for (int day = 1; day <= 31; ++day) {
        char name[64];
        std::snprintf(name, sizeof name, "VexlaneLog_2024-03-%02d_10-00-00_arj.txt", day);
        writeFileBytes(archive() / name, "old");
    }
    writeFileBytes(archive() / "other.txt", "not ours");
    writeFileBytes(log(), "[2024-04-01 09:00:00]Start\r\n");
    archiveLogFile(log());
    const auto names = namesIn(archive());
    EXPECT_EQ(names.size(), 31u);   // 30 archives and the stranger
    EXPECT_TRUE(names.count("other.txt"));
    EXPECT_TRUE(names.count("VexlaneLog_2024-04-01_09-00-00_arj.txt"));
    EXPECT_FALSE(names.count("VexlaneLog_2024-03-01_10-00-00_arj.txt"));
    EXPECT_FALSE(names.count("VexlaneLog_2024-03-02_10-00-00_arj.txt"));
    EXPECT_TRUE(names.count("VexlaneLog_2024-03-03_10-00-00_arj.txt"));
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
