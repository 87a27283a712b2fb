#include "maintenance/settings_migration.h"

#include <gtest/gtest.h>

#include "platform/text_mode.h"
#include "support/captured_stderr.h"
#include "support/temp_dir.h"

namespace vx::maintenance {
namespace {

namespace fs = std::filesystem;
using test::readFileBytes;
using test::writeFileBytes;

// The remembered folder as the file holds it: UTF-8, one line in the
// platform's text mode.
std::string rememberedLine(const fs::path& folder)
{
    const std::u8string utf8 = folder.u8string();
    return platform::toTextMode(std::string(utf8.begin(), utf8.end()) + "\n");
}

class SettingsMigration : public ::testing::Test {
protected:
    SettingsMigration()
    {
        for (const fs::path& folder : {oldInstall(), newInstall(), userData()})
            fs::create_directories(folder);
        fs::create_directories(oldInstall() / "configs");
    }
    fs::path oldInstall() const { return dir_.path() / "Vexlane 1.0"; }
    fs::path newInstall() const { return dir_.path() / "Vexlane 2.0"; }
    fs::path userData() const { return dir_.path() / "data" / "vexlane"; }
    test::TempDir dir_;
};

TEST_F(SettingsMigration, OffersTheEarlierFolderOnlyWhenTheRunMovedToAnother)
{
    // A first run anywhere: nothing to offer, this folder is remembered.
    EXPECT_EQ(checkSettingsMigration(userData(), oldInstall()), fs::path());
    EXPECT_EQ(readFileBytes(userData() / lastRunFileName), rememberedLine(oldInstall()));
    // The same folder again: nothing.
    EXPECT_EQ(checkSettingsMigration(userData(), oldInstall()), fs::path());
    // A new folder: the earlier one, once; the new one is remembered.
    EXPECT_EQ(checkSettingsMigration(userData(), newInstall()), oldInstall());
    EXPECT_EQ(checkSettingsMigration(userData(), newInstall()), fs::path());
    // Back to an earlier folder that has lost its configs: nothing.
    fs::remove_all(oldInstall() / "configs");
    EXPECT_EQ(checkSettingsMigration(userData(), oldInstall()), fs::path());
    // Without a user data folder nothing is remembered or offered.
    EXPECT_EQ(checkSettingsMigration({}, newInstall()), fs::path());
}

TEST_F(SettingsMigration, CopiesTheEarlierConfigsOverTheNewOnes)
{
    writeFileBytes(oldInstall() / "configs" / "vx_main_config.json", "old main");
    fs::create_directories(oldInstall() / "configs" / "lists");
    writeFileBytes(oldInstall() / "configs" / "lists" / "gate.list.csv", "A123BC\n");
    fs::create_directories(newInstall() / "configs");
    writeFileBytes(newInstall() / "configs" / "vx_main_config.json", "new main");
    writeFileBytes(newInstall() / "configs" / "vx_stream9.json", "kept");
    std::string error;
    ASSERT_TRUE(copyEarlierConfigs(oldInstall(), newInstall(), error)) << error;
    EXPECT_EQ(readFileBytes(newInstall() / "configs" / "vx_main_config.json"), "old main");
    EXPECT_EQ(readFileBytes(newInstall() / "configs" / "lists" / "gate.list.csv"), "A123BC\n");
    EXPECT_EQ(readFileBytes(newInstall() / "configs" / "vx_stream9.json"), "kept");

    fs::remove_all(oldInstall() / "configs");
    EXPECT_FALSE(copyEarlierConfigs(oldInstall(), newInstall(), error));
    EXPECT_FALSE(error.empty());
}

} // namespace
} // namespace vx::maintenance
