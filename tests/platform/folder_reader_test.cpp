// A folder's entries with their kinds, a file's size asked through the open
// folder, a Cyrillic name back to its path, and a folder that isn't there.
#include <gtest/gtest.h>

#include <fstream>
#include <map>

#include "platform/folder_reader.h"
#include "support/temp_dir.h"

namespace vx::platform {
namespace {

namespace fs = std::filesystem;

TEST(FolderReader, KindsSizesAndNames)
{
    test::TempDir dir;
    const std::string cyrillic = "Пункт 1.webm";
    fs::create_directory(dir.path() / "2024_05_15");
    std::ofstream(dir.path() / "video.webm", std::ios::binary) << std::string(1234, 'x');
    std::ofstream(dir.path() / fs::path(std::u8string(cyrillic.begin(), cyrillic.end())), std::ios::binary) << "abc";

    FolderReader reader(dir.path());
    ASSERT_TRUE(reader.isOpen());
    std::map<std::string, std::pair<EntryKind, std::uint64_t>> seen;
    FolderEntry entry;
    while (reader.next(entry)) {
        std::uint64_t size = 0;
        const bool sized = reader.sizeOfLast(size);
        EXPECT_EQ(sized, entry.kind == EntryKind::file) << entry.name;
        seen[entry.name] = {entry.kind, size};
        EXPECT_TRUE(fs::exists(reader.pathOf(entry))) << entry.name;
    }
    ASSERT_EQ(seen.size(), 3u);
    EXPECT_EQ(seen["2024_05_15"].first, EntryKind::folder);
    EXPECT_EQ(seen["video.webm"], std::make_pair(EntryKind::file, std::uint64_t{1234}));
    EXPECT_EQ(seen[cyrillic], std::make_pair(EntryKind::file, std::uint64_t{3}));

    FolderReader missing(dir.path() / "no such folder");
    EXPECT_FALSE(missing.isOpen());
    EXPECT_FALSE(missing.next(entry));
}

} // namespace
} // namespace vx::platform
