#include "platform/paths.h"
#include "support/captured_stderr.h"
#include "support/temp_dir.h"

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

using namespace vx::platform;
using vx::test::readFileBytes;
using vx::test::RuntimeSandbox;
using vx::test::TempDir;
using vx::test::writeFileBytes;

namespace {

mode_t modeOf(const std::filesystem::path& path)
{
    struct stat st {};
    EXPECT_EQ(::stat(path.c_str(), &st), 0) << path;
    return st.st_mode & 07777;
}

} // namespace

// The runtime folder is made private, a loose one is tightened, and a file
// in its place is refused.
TEST(Paths, RuntimeFolderIsPrivate)
{
    {
        RuntimeSandbox sandbox;
        ASSERT_EQ(runtimeDirectory(), sandbox.root() / "vexlane");
        EXPECT_EQ(modeOf(sandbox.root() / "vexlane"), 0700u);
    }
    {
        RuntimeSandbox sandbox;
        const auto folder = sandbox.root() / "vexlane";
        ASSERT_EQ(::mkdir(folder.c_str(), 0755), 0);
        ASSERT_EQ(::chmod(folder.c_str(), 0755), 0);
        EXPECT_EQ(runtimeDirectory(), folder);
        EXPECT_EQ(modeOf(folder), 0700u);
    }
    RuntimeSandbox sandbox;
    writeFileBytes(sandbox.root() / "vexlane", "not a folder");
    EXPECT_TRUE(runtimeDirectory().empty());
}

TEST(Paths, CopyOverwritesWithNamesInCyrillicAndBlanksAndReportsAMissingFile)
{
    TempDir dir("vexlane test папка ");
    const auto from = dir.path() / "настройки камеры.json";
    const auto to = dir.path() / "настройки камеры.json.tmp";
    writeFileBytes(from, "{\n\t\"new\":1\n}");
    writeFileBytes(to, "an older and much longer content that must not survive the copy");
    std::string error;
    ASSERT_TRUE(copyFileOverwrite(from, to, error)) << error;
    EXPECT_EQ(readFileBytes(to), "{\n\t\"new\":1\n}");

    EXPECT_FALSE(copyFileOverwrite(dir.path() / "нет такого", dir.path() / "copy", error));
    EXPECT_FALSE(error.empty());
    EXPECT_FALSE(fileExists(dir.path() / "copy"));
}
