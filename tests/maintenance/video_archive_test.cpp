#include <gtest/gtest.h>

#include <ctime>
#include <fstream>

#include "maintenance/video_archive.h"
#include "support/temp_dir.h"

using namespace vx::maintenance;
using vx::test::TempDir;
namespace fs = std::filesystem;

namespace {

const std::uint64_t kb = 1024;

// A file of `size` bytes (sparse: the archive only looks at the size).
fs::path makeFile(const fs::path& folder, const std::string& name, std::uint64_t size)
{
    fs::create_directories(folder);
    const fs::path path = folder / name;
    std::ofstream(path).put('x');
    fs::resize_file(path, size);
    return path;
}

// 2024-05-15 12:00:00 UTC: a fixed "now" for the passes.
const std::time_t fixedNow = 1715774400;

struct Archive {
    TempDir dir;
    fs::path root() const { return dir.path(); }
    std::vector<std::string> deletedNames;
    std::function<bool(const fs::path&)> refuse = [](const fs::path&) { return false; };

    VideoArchive make(std::uint32_t limitMb)
    {
        VideoArchiveHooks hooks;
        hooks.now = [] { return fixedNow; };
        hooks.deleteFile = [this](const fs::path& path) {
            if (refuse(path))
                return vx::platform::FileDeleteResult::refused;
            const auto result = vx::platform::deleteFileUnlessInUse(path);
            if (result == vx::platform::FileDeleteResult::deleted)
                deletedNames.push_back(path.filename().string());
            return result;
        };
        return VideoArchive(root(), limitMb, hooks);
    }
    std::string today() const { return VideoArchive::dayFolders(fixedNow)[1]; }
};

} // namespace

TEST(ParseVideoName, ExactChecks)
{
    std::uint64_t key = 0;
    std::string folder;
    EXPECT_TRUE(parseVideoName("video_stream_12_2024_05_01_10_20_30.webm", key, folder));
    EXPECT_EQ(key, 20240501102030u);
    EXPECT_EQ(folder, "stream12");
    // A bracketed suffix ends the last field; day 31 passes in any month.
    EXPECT_TRUE(parseVideoName("video_stream_3_2024_02_31_10_00_07(2).webm", key, folder));
    EXPECT_EQ(key, 20240231100007u);
    EXPECT_EQ(folder, "stream3");
    // Short fields are numbers all the same.
    EXPECT_TRUE(parseVideoName("video_stream_1_2024_5_1_0_0_0.webm", key, folder));
    EXPECT_EQ(key, 20240501000000u);

    for (const char* bad : {
             "video_stream_1_1999_01_01_00_00_00.webm",   // year below 2000
             "video_stream_1_2101_01_01_00_00_00.webm",   // year above 2100
             "video_stream_1_2024_13_01_00_00_00.webm",   // month
             "video_stream_1_2024_00_01_00_00_00.webm",
             "video_stream_1_2024_01_00_00_00_00.webm",   // day
             "video_stream_1_2024_01_32_00_00_00.webm",
             "video_stream_1_2024_01_01_24_00_00.webm",   // hour
             "video_stream_1_2024_01_01_00_60_00.webm",   // minute
             "video_stream_1_2024_01_01_00_00_60.webm",   // second
             "video_stream__2024_01_01_00_00_00.webm",    // empty ID
             "video_stream_1a_2024_01_01_00_00_00.webm",  // ID not all digits
             "video_streamX1_2024_01_01_00_00_00.webm",   // no "_" at 12
             "video_camera_1_2024_01_01_00_00_00.webm",   // wrong head
             "video_stream_1_2024_01_01_00_0x_00.webm",   // a field that isn't a number
             "video_stream_1_2024_01_01_00_00_00webm",    // nothing ends the last field
             "video_stream_1_2024_1_1_0_0_0",             // 29 characters
             "video_stream_1_2024_5_1_0_0_0_x.webm",      // a seventh field
         })
        EXPECT_FALSE(parseVideoName(bad, key, folder)) << bad;
}

TEST(VideoArchive, FullScanIndexesOnlyValidWebmFiles)
{
    Archive a;
    makeFile(a.root() / "stream1" / "2024_01_01", "video_stream_1_2024_01_01_10_00_00.webm", 10 * kb);
    makeFile(a.root() / "stream1" / "2024_01_01", "video_stream_1_2024_01_01_11_00_00(1).webm", 20 * kb);
    makeFile(a.root() / "stream1" / "2024_01_01", "video_stream_1_1999_01_01_00_00_00.webm", 40 * kb);
    makeFile(a.root() / "stream1" / "2024_01_01", "video_stream_1_2024_01_01_12_00_00.mp4", 80 * kb);
    makeFile(a.root() / "stream1", "video_stream_1_2024_01_01_13_00_00.webm", 160 * kb);   // not in a day folder
    // Any folder of the root is read, keyed by its own name.
    makeFile(a.root() / "cam" / "2024_01_02", "video_stream_7_2024_01_02_10_00_00.webm", 1 * kb);

    VideoArchive archive = a.make(1);
    EXPECT_EQ(archive.totalBytes(), 31 * kb);
    EXPECT_EQ(archive.limitBytes(), 1u << 20);
    ASSERT_EQ(archive.streams().size(), 2u);
    const VideoStreamRecord& s1 = archive.streams().at("stream1");
    EXPECT_EQ(s1.bytes, 30 * kb);
    EXPECT_EQ(s1.days.at("2024_01_01").files.size(), 2u);
    EXPECT_EQ(archive.streams().at("cam").bytes, 1 * kb);
}

TEST(VideoArchive, OldestGoFirstAcrossStreamsUntilUnderTheLimit)
{
    Archive a;
    // 1 MB limit; 6 files of 300 KB = 1800 KB: the three oldest must go.
    makeFile(a.root() / "stream2" / "2024_01_02", "video_stream_2_2024_01_02_08_00_00.webm", 300 * kb);
    makeFile(a.root() / "stream1" / "2024_01_03", "video_stream_1_2024_01_03_08_00_00.webm", 300 * kb);
    makeFile(a.root() / "stream1" / "2024_01_01", "video_stream_1_2024_01_01_09_00_00.webm", 300 * kb);
    makeFile(a.root() / "stream2" / "2024_01_01", "video_stream_2_2024_01_01_09_00_00.webm", 300 * kb);
    makeFile(a.root() / "stream3" / "2024_01_04", "video_stream_3_2024_01_04_08_00_00.webm", 300 * kb);
    makeFile(a.root() / "stream3" / "2024_01_01", "video_stream_3_2024_01_01_07_00_00.webm", 300 * kb);
    VideoArchive archive = a.make(1);
    archive.enforceQuota();
    // Equal keys (stream1 and stream2 at 09:00 on the 1st) keep the index's
    // order, and both stay candidates.
    EXPECT_EQ(a.deletedNames, (std::vector<std::string>{"video_stream_3_2024_01_01_07_00_00.webm",
                                                         "video_stream_1_2024_01_01_09_00_00.webm",
                                                         "video_stream_2_2024_01_01_09_00_00.webm"}));
    EXPECT_EQ(archive.totalBytes(), 900 * kb);
    EXPECT_EQ(archive.streams().at("stream1").bytes, 300 * kb);
    // The emptied day folders are swept; the stream folders stay.
    EXPECT_FALSE(fs::exists(a.root() / "stream1" / "2024_01_01"));
    EXPECT_FALSE(fs::exists(a.root() / "stream3" / "2024_01_01"));
    EXPECT_TRUE(fs::exists(a.root() / "stream1" / "2024_01_03"));
    EXPECT_FALSE(archive.streams().at("stream1").days.contains("2024_01_01"));
    EXPECT_TRUE(fs::is_directory(a.root() / "stream3"));

    // Under the limit: a second pass deletes nothing.
    a.deletedNames.clear();
    archive.enforceQuota();
    EXPECT_TRUE(a.deletedNames.empty());
}

TEST(VideoArchive, LimitZeroDeletesAllItCanAndNeverTheIgnoredNames)
{
    Archive a;
    const std::string day = "2024_01_01";
    makeFile(a.root() / "stream1" / day, "video_stream_1_2024_01_01_09_00_00.webm", 10 * kb);
    const fs::path open = makeFile(a.root() / "stream1" / day, "video_stream_1_2024_01_01_10_00_00.webm", 10 * kb);
    const fs::path ignored = makeFile(a.root() / "stream2" / day, "video_stream_1_1999_01_01_00_00_00.webm", 10 * kb);
    makeFile(a.root() / "stream2" / day, "notes.txt", 10 * kb);
    // The stream process still has one file open: it refuses to go.
    a.refuse = [&](const fs::path& p) { return p == open; };
    VideoArchive archive = a.make(0);
    archive.enforceQuota();
    EXPECT_EQ(a.deletedNames, (std::vector<std::string>{"video_stream_1_2024_01_01_09_00_00.webm"}));
    EXPECT_EQ(archive.totalBytes(), 10 * kb);   // the refused file stays counted
    EXPECT_TRUE(fs::exists(open));
    EXPECT_TRUE(fs::exists(ignored));
    EXPECT_TRUE(fs::exists(a.root() / "stream2" / day / "notes.txt"));
    EXPECT_TRUE(fs::exists(a.root() / "stream2" / day));   // not empty: stays

    // Closed by now: the next pass takes it, and the day folder goes.
    a.refuse = [](const fs::path&) { return false; };
    archive.enforceQuota();
    EXPECT_FALSE(fs::exists(open));
    EXPECT_EQ(archive.totalBytes(), 0u);
    EXPECT_FALSE(fs::exists(a.root() / "stream1" / day));
    EXPECT_TRUE(fs::exists(ignored));
}

// Yesterday, today and tomorrow of the local calendar.
TEST(VideoArchive, APassLooksAtThreeDayFoldersOfStreamFoldersOnly)
{
    vx::test::ScopedEnv tz("TZ", "UTC");
    tzset();
    const std::vector<std::string> days = VideoArchive::dayFolders(fixedNow);
    EXPECT_EQ(days, (std::vector<std::string>{"2024_05_14", "2024_05_15", "2024_05_16"}));
    Archive a;
    fs::create_directories(a.root());
    VideoArchive archive = a.make(1);
    EXPECT_EQ(archive.totalBytes(), 0u);
    makeFile(a.root() / "stream4" / days[0], "video_stream_4_2024_05_14_23_00_00.webm", 1 * kb);
    makeFile(a.root() / "stream4" / days[1], "video_stream_4_2024_05_15_10_00_00.webm", 2 * kb);
    makeFile(a.root() / "stream4" / days[2], "video_stream_4_2024_05_16_00_00_00.webm", 4 * kb);
    makeFile(a.root() / "stream4" / "2024_05_01", "video_stream_4_2024_05_01_10_00_00.webm", 8 * kb);   // too old
    makeFile(a.root() / "cam9" / days[1], "video_stream_9_2024_05_15_10_00_00.webm", 16 * kb);   // not "stream*"
    archive.enforceQuota();
    EXPECT_EQ(archive.totalBytes(), 7 * kb);
    EXPECT_EQ(archive.streams().size(), 1u);
    // A second pass doesn't count a file twice.
    archive.enforceQuota();
    EXPECT_EQ(archive.totalBytes(), 7 * kb);
    EXPECT_EQ(archive.streams().at("stream4").days.at(a.today()).files.size(), 1u);
}

TEST(VideoArchive, AFileRemovedByHandLeavesTheTotalsAndSparesNewerOnes)
{
    Archive a;
    const std::uint64_t mb = 1024 * kb;
    const fs::path day = a.root() / "stream1" / "2024_01_01";
    const fs::path gone1 = makeFile(day, "video_stream_1_2024_01_01_08_00_00.webm", mb);
    const fs::path gone2 = makeFile(day, "video_stream_1_2024_01_01_09_00_00.webm", mb);
    makeFile(day, "video_stream_1_2024_01_01_10_00_00.webm", mb);
    makeFile(day, "video_stream_1_2024_01_01_11_00_00.webm", mb);
    VideoArchive archive = a.make(2);
    EXPECT_EQ(archive.totalBytes(), 4 * mb);
    fs::remove(gone1);
    fs::remove(gone2);
    archive.enforceQuota();
    EXPECT_TRUE(a.deletedNames.empty());
    EXPECT_EQ(archive.totalBytes(), 2 * mb);
    EXPECT_EQ(archive.streams().at("stream1").days.at("2024_01_01").files.size(), 2u);
    archive.enforceQuota();
    EXPECT_TRUE(a.deletedNames.empty());
}

TEST(VideoArchive, LinksOutOfTheTreeAreNeverFollowed)
{
    Archive a;
    TempDir outside;
    const std::string today = a.today();
    const fs::path far = makeFile(outside.path() / "stream5" / today, "video_stream_5_2024_05_15_10_00_00.webm", kb);
    const fs::path farDay = outside.path() / "stream5" / today;
    const fs::path own = makeFile(a.root() / "stream1" / "2024_01_01", "video_stream_1_2024_01_01_10_00_00.webm", kb);
    // A linked stream folder, a linked day folder and a linked file.
    std::error_code linkError;
    fs::create_directory_symlink(outside.path() / "stream5", a.root() / "stream5", linkError);
    if (linkError)   // the Windows runtime makes no links
        GTEST_SKIP() << "no symbolic links here: " << linkError.message();
    fs::create_directory_symlink(farDay, a.root() / "stream1" / today);
    fs::create_directories(a.root() / "stream2" / today);
    fs::create_symlink(far, a.root() / "stream2" / today / "video_stream_2_2024_05_15_10_00_00.webm");

    VideoArchive archive = a.make(0);
    EXPECT_EQ(archive.totalBytes(), kb);
    archive.enforceQuota();
    EXPECT_EQ(a.deletedNames, (std::vector<std::string>{own.filename().string()}));
    EXPECT_EQ(archive.totalBytes(), 0u);
    EXPECT_TRUE(fs::exists(far));
    EXPECT_TRUE(fs::is_symlink(a.root() / "stream1" / today));
    EXPECT_TRUE(fs::is_symlink(a.root() / "stream5"));
}

TEST(VideoArchive, AStreamFolderNamedUnlikeItsFilesIsCountedOnce)
{
    Archive a;
    const std::string today = a.today();
    makeFile(a.root() / "stream_x" / today, "video_stream_1_2024_05_15_10_00_00.webm", 2 * kb);
    makeFile(a.root() / "streamA" / today, "video_stream_1_2024_05_15_11_00_00.webm", 4 * kb);
    VideoArchive archive = a.make(1);
    EXPECT_EQ(archive.totalBytes(), 6 * kb);
    archive.enforceQuota();
    EXPECT_EQ(archive.totalBytes(), 6 * kb);
    EXPECT_EQ(archive.streams().size(), 2u);
    EXPECT_EQ(archive.streams().at("stream_x").bytes, 2 * kb);
    EXPECT_EQ(archive.streams().at("streamA").bytes, 4 * kb);
}
