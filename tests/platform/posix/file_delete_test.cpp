// Deleting with the Windows meaning: a file marked in use stays, a missing
// one says so, a link is refused and what it points to is untouched.
#include <gtest/gtest.h>

#include <fstream>

#include "platform/file_delete.h"
#include "support/temp_dir.h"

namespace vx::platform {
namespace {

namespace fs = std::filesystem;

TEST(FileDelete, InUseMissingLinkAndFree)
{
    test::TempDir dir;
    const fs::path file = dir.path() / "chunk.webm";
    auto mark = markFileInUse(file);   // made, empty, and marked
    ASSERT_TRUE(mark);
    std::ofstream(file, std::ios::app) << "frames";   // a second writer of the same file
    EXPECT_EQ(deleteFileUnlessInUse(file), FileDeleteResult::refused);
    EXPECT_TRUE(fs::exists(file));
    mark.reset();
    EXPECT_EQ(deleteFileUnlessInUse(file), FileDeleteResult::deleted);
    EXPECT_FALSE(fs::exists(file));
    EXPECT_EQ(deleteFileUnlessInUse(file), FileDeleteResult::missing);
    EXPECT_EQ(deleteFileUnlessInUse(dir.path() / "no" / "such.webm"), FileDeleteResult::missing);

    const fs::path target = dir.path() / "target.webm";
    std::ofstream(target) << "x";
    fs::create_symlink(target, dir.path() / "link.webm");
    EXPECT_EQ(deleteFileUnlessInUse(dir.path() / "link.webm"), FileDeleteResult::refused);
    EXPECT_TRUE(fs::exists(target));
}

} // namespace
} // namespace vx::platform
