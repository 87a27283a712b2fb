// The tray's autorun item against the desktop's autostart folder.
#include <gtest/gtest.h>

#include <fstream>

#include "config/text_codec.h"
#include "core/main_commands.h"
#include "core/startup.h"
#include "support/captured_stderr.h"
#include "support/temp_dir.h"

using namespace vx;
using namespace vx::core;
using test::CapturedStderr;
using test::readFileBytes;
using test::ScopedEnv;
using test::TempDir;

class TrayAutorun : public ::testing::Test {
protected:
    TempDir dir;
    ScopedEnv home{"HOME", (dir.path() / "home").string()};
    ScopedEnv xdg{"XDG_CONFIG_HOME", ""};
    AppState state;
    ProcessActions actions;
    std::vector<std::string> messages;
    MainCommandHooks hooks;

    TrayAutorun()
    {
        std::filesystem::create_directories(dir.path() / "home");
        std::filesystem::create_directories(dir.path() / "bin" / "configs");
        state.baseDirectory = dir.path() / "bin";
        state.ConfigDirectory = (dir.path() / "bin" / "configs").string();
        actions.saveMainConfig = [this] { return saveMainConfig(state); };
        hooks.showMessage = [this](const std::string& title, const std::string& text) {
            messages.push_back(config::cp1251ToUtf8(title) + ": " + config::cp1251ToUtf8(text));
        };
        hooks.setAutorun = systemCommandHooks().setAutorun;
        // The main config exists before, as on any installation that ran once.
        saveMainConfig(state);
    }
    std::string savedFlag() const
    {
        const std::string text = readFileBytes(dir.path() / "bin" / "configs" / "vx_main_config.json");
        const auto at = text.find("\"autoRunManager\":");
        return at == std::string::npos ? "" : text.substr(at, text.find(',', at) - at);
    }
    std::filesystem::path entry() const { return dir.path() / "home/.config/autostart/Vexlane.desktop"; }
};

TEST_F(TrayAutorun, TogglesTheEntryAndTheSavedFlagAndAFailureKeepsTheOldValue)
{
    ASSERT_TRUE(toggleTrayAutorun(state, actions, hooks));
    EXPECT_TRUE(state.liveMainConfig.autoRunManager);
    EXPECT_TRUE(state.storedMainConfig.autoRunManager);
    EXPECT_EQ(savedFlag(), "\"autoRunManager\":true");
    // The entry runs the program from baseDirectory under its own file name.
    EXPECT_NE(readFileBytes(entry()).find("\nExec=" + (dir.path() / "bin" / "core_tests").string() + "\n"),
              std::string::npos)
        << readFileBytes(entry());

    ASSERT_TRUE(toggleTrayAutorun(state, actions, hooks));
    EXPECT_FALSE(state.liveMainConfig.autoRunManager);
    EXPECT_EQ(savedFlag(), "\"autoRunManager\":false");
    EXPECT_FALSE(std::filesystem::exists(entry()));
    EXPECT_TRUE(messages.empty());

    // A failing autostart folder leaves the file with the new value and
    // memory with the old.
    std::filesystem::remove_all(dir.path() / "home" / ".config");
    std::ofstream(dir.path() / "home" / ".config") << "not a folder";
    CapturedStderr err;
    EXPECT_FALSE(toggleTrayAutorun(state, actions, hooks));
    EXPECT_FALSE(state.liveMainConfig.autoRunManager);
    EXPECT_TRUE(state.storedMainConfig.autoRunManager);
    EXPECT_EQ(savedFlag(), "\"autoRunManager\":true");
    EXPECT_EQ(messages, (std::vector<std::string>{"Сообщение: Невозможно снять/установить автозапуск Менеджера!"}));
    EXPECT_EQ(err.text(), "Failed to open registry key. Error: 20\n");
}
