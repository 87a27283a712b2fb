#include "platform/autorun.h"
#include "support/captured_stderr.h"
#include "support/temp_dir.h"

#include <gtest/gtest.h>

#include <fstream>

using namespace vx::platform;
using vx::test::CapturedStderr;
using vx::test::readFileBytes;
using vx::test::ScopedEnv;
using vx::test::TempDir;

namespace {

// HOME and XDG_CONFIG_HOME point into a fresh folder for one test.
struct AutostartSandbox {
    TempDir dir;
    ScopedEnv home{"HOME", (dir.path() / "home").string()};
    ScopedEnv config{"XDG_CONFIG_HOME", ""};
    std::filesystem::path entry() const { return dir.path() / "home/.config/autostart/Vexlane.desktop"; }
};

const char* const plainEntry =
    "[Desktop Entry]\n"
    "Type=Application\n"
    "Name=Vexlane\n"
    "Exec=/opt/vexlane/bin/vexlane\n"
    "X-GNOME-Autostart-enabled=true\n";

} // namespace

TEST(Autorun, SetSetAgainRemoveTwice)
{
    AutostartSandbox box;
    CapturedStderr err;
    EXPECT_TRUE(setAutorun("Vexlane", "/opt/vexlane/bin/vexlane", false));   // nothing was ever set
    // The folder tree below HOME doesn't exist yet: it is made.
    ASSERT_TRUE(setAutorun("Vexlane", "/opt/vexlane/bin/vexlane", true));
    EXPECT_EQ(autorunEntryPath("Vexlane"), box.entry());
    EXPECT_EQ(readFileBytes(box.entry()), plainEntry);

    // Set again: the same bytes, no temporary file left behind.
    ASSERT_TRUE(setAutorun("Vexlane", "/opt/vexlane/bin/vexlane", true));
    EXPECT_EQ(readFileBytes(box.entry()), plainEntry);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(box.entry().parent_path()),
                            std::filesystem::directory_iterator()),
              1);

    EXPECT_TRUE(setAutorun("Vexlane", "/opt/vexlane/bin/vexlane", false));
    EXPECT_FALSE(std::filesystem::exists(box.entry()));
    EXPECT_TRUE(setAutorun("Vexlane", "/opt/vexlane/bin/vexlane", false));
    EXPECT_EQ(err.text(), "");
}

TEST(Autorun, XdgConfigHomeAndTheExecLine)
{
    AutostartSandbox box;
    {
        ScopedEnv config("XDG_CONFIG_HOME", (box.dir.path() / "cfg").string());
        ASSERT_TRUE(setAutorun("Vexlane", "/a/vexlane", true));
        EXPECT_TRUE(std::filesystem::exists(box.dir.path() / "cfg/autostart/Vexlane.desktop"));
    }
    {
        // A relative value is ignored, as the desktop's rules say.
        ScopedEnv config("XDG_CONFIG_HOME", "relative/cfg");
        ASSERT_TRUE(setAutorun("Vexlane", "/a/vexlane", true));
        EXPECT_TRUE(std::filesystem::exists(box.entry()));
    }

    // A path with blanks and Cyrillic letters runs as one word.
    ASSERT_TRUE(setAutorun("Vexlane", "/home/оператор/Мои программы/vexlane", true));
    const std::string text = readFileBytes(box.entry());
    EXPECT_NE(text.find("Exec=\"/home/оператор/Мои программы/vexlane\"\n"), std::string::npos) << text;

    // A backslash, a quote and a percent sign: escaped for the Exec rules,
    // then the value's backslashes doubled.
    ASSERT_TRUE(setAutorun("Vexlane", "/opt/a\\b\"c%d", true));
    EXPECT_NE(readFileBytes(box.entry()).find("Exec=\"/opt/a\\\\\\\\b\\\\\"c%%d\"\n"), std::string::npos)
        << readFileBytes(box.entry());
}

TEST(Autorun, FailuresGiveFalseAndTheirTexts)
{
    AutostartSandbox box;
    std::filesystem::create_directories(box.dir.path() / "home");
    {
        // The configuration folder is a plain file: no folder can be made.
        std::ofstream(box.dir.path() / "home/.config") << "x";
        CapturedStderr err;
        EXPECT_FALSE(setAutorun("Vexlane", "/a/vexlane", true));
        EXPECT_FALSE(setAutorun("Vexlane", "/a/vexlane", false));
        EXPECT_EQ(err.text(), "Failed to open registry key. Error: 20\n"
                              "Failed to open registry key. Error: 20\n");
        std::filesystem::remove(box.dir.path() / "home/.config");
    }
    {
        // The file can't be written: a folder stands where it would go
        // (which even the superuser can't open for writing).
        std::filesystem::create_directories(box.dir.path() / "home/.config/autostart/Vexlane.desktop.tmp");
        CapturedStderr err;
        EXPECT_FALSE(setAutorun("Vexlane", "/a/vexlane", true));
        EXPECT_EQ(err.text(), "Failed to set autorun. Error: 21\n");
        EXPECT_FALSE(std::filesystem::exists(box.entry()));
    }
    {
        // The entry can't be removed: it is a folder.
        std::filesystem::create_directories(box.entry() / "inner");
        CapturedStderr err;
        EXPECT_FALSE(setAutorun("Vexlane", "/a/vexlane", false));
        EXPECT_EQ(err.text(), "Failed to remove autorun. Error: 21\n");
    }
}
