// The pass on folders that have settled: a day folder whose time of change
// is unchanged since a settled listing is not listed again; any change to
// it (a new file, one removed) brings it back.
#include <gtest/gtest.h>

#include <chrono>
#include <fstream>

#include "maintenance/video_archive.h"
#include "support/temp_dir.h"

using namespace vx::maintenance;
namespace fs = std::filesystem;

namespace {

// 2024-05-15 12:00:00 UTC, as the passes see it.
const std::time_t fixedNow = 1715774400;

void makeFile(const fs::path& folder, const std::string& name)
{
    fs::create_directories(folder);
    std::ofstream(folder / name).put('x');
    fs::resize_file(folder / name, 1 << 20);
}

// Makes the folder look settled: changed a minute ago.
fs::file_time_type age(const fs::path& folder)
{
    const fs::file_time_type old = fs::file_time_type::clock::now() - std::chrono::minutes(1);
    fs::last_write_time(folder, old);
    return old;
}

// Whether this system lets a folder's time be set (Windows' library call
// opens folders without the flag they need for it).
bool folderTimesCanBeSet(const fs::path& folder)
{
    std::error_code ec;
    fs::last_write_time(folder, fs::last_write_time(folder, ec), ec);
    return !ec;
}

TEST(VideoArchiveSettled, UnchangedFoldersAreSkippedAndChangedOnesListed)
{
    vx::test::TempDir dir;
    const fs::path today = dir.path() / "stream1" / VideoArchive::dayFolders(fixedNow)[1];
    makeFile(today, "video_stream_1_2024_05_15_10_00_00.webm");
    if (!folderTimesCanBeSet(today))
        GTEST_SKIP() << "a folder's time can't be set here";
    age(today);
    std::vector<std::string> deleted;
    VideoArchiveHooks hooks;
    hooks.now = [] { return fixedNow; };
    hooks.deleteFile = [&](const fs::path& path) {
        deleted.push_back(path.filename().string());
        return vx::platform::deleteFileUnlessInUse(path);
    };
    VideoArchive archive(dir.path(), 10, hooks);
    EXPECT_EQ(archive.totalBytes(), 1u << 20);

    // A new file changes the folder's time: the next pass finds it.
    makeFile(today, "video_stream_1_2024_05_15_11_00_00.webm");
    archive.enforceQuota();
    EXPECT_EQ(archive.totalBytes(), 2u << 20);

    // Settled again and listed so; then a file comes but the folder's time
    // is put back as it was: an unchanged folder is not listed.
    const fs::file_time_type settled = age(today);
    archive.enforceQuota();
    makeFile(today, "video_stream_1_2024_05_15_11_30_00.webm");
    fs::last_write_time(today, settled);
    archive.enforceQuota();
    EXPECT_EQ(archive.totalBytes(), 2u << 20);
    // Its time moves: listed again.
    fs::last_write_time(today, fs::file_time_type::clock::now());
    archive.enforceQuota();
    EXPECT_EQ(archive.totalBytes(), 3u << 20);

    // Over the limit once the folder shows its change: the oldest goes.
    makeFile(today, "video_stream_1_2024_05_15_09_00_00.webm");
    VideoArchive small(dir.path(), 3, hooks);
    EXPECT_EQ(small.totalBytes(), 4u << 20);
    small.enforceQuota();
    EXPECT_EQ(deleted, std::vector<std::string>{"video_stream_1_2024_05_15_09_00_00.webm"});
    EXPECT_EQ(small.totalBytes(), 3u << 20);
    // The deletion changed the folder: the pass after lists it and counts nothing twice.
    small.enforceQuota();
    EXPECT_EQ(small.totalBytes(), 3u << 20);
}

} // namespace
