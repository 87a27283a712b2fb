#include <gtest/gtest.h>

#include <fstream>

#include "config/text_codec.h"
#include "core/main_commands.h"
#include "core/startup.h"
#include "maintenance/system_log.h"
#include "platform/command_line.h"
#include "support/captured_stderr.h"
#include "support/temp_dir.h"

using namespace vx;
using namespace vx::core;
using test::CapturedStderr;
using test::readFileBytes;
using test::ScopedEnv;
using test::TempDir;

namespace {

std::string cp1251(const char* utf8)
{
    return config::utf8ToCp1251(utf8);
}

// Every hook notes what it was asked.
struct Recorded {
    std::vector<std::string> calls;
    std::vector<platform::ProcessStartInfo> starts;
    MainCommandHooks hooks()
    {
        MainCommandHooks h;
        h.openSettings = [this] { calls.push_back("settings"); };
        h.destroyWindow = [this] { calls.push_back("destroy"); };
        h.openFolder = [this](const std::filesystem::path& p) { calls.push_back("folder " + p.string()); };
        h.openFile = [this](const std::filesystem::path& p) { calls.push_back("file " + p.string()); };
        h.showMessage = [this](const std::string& title, const std::string& text) {
            calls.push_back("message " + config::cp1251ToUtf8(title) + ": " + config::cp1251ToUtf8(text));
        };
        h.showAbout = [this](const std::string& text) { calls.push_back("about " + config::cp1251ToUtf8(text)); };
        h.startProcess = [this](const platform::ProcessStartInfo& info) {
            starts.push_back(info);
            return std::unique_ptr<platform::StartedProcess>();
        };
        h.runDetached = [this](std::function<void()> task) {
            calls.push_back("detached");
            task();
        };
        return h;
    }
};

} // namespace

TEST(MainCommands, MenuDispatcherTakesOnly10002To10007)
{
    TempDir dir;
    AppState state;
    state.baseDirectory = dir.path() / "bin";
    state.versionText = "1.0.0.1";
    state.liveMainConfig.systemLogPath = cp1251("/журналы/система");
    state.liveMainConfig.recogLogPath = "/logs/recog";
    Recorded r;
    for (int id : {10001, 10008, 11003, 11004, 1042, 10000})
        runMenuCommand(state, id, r.hooks());
    EXPECT_TRUE(r.calls.empty());

    for (int id : {10004, 10005, 10002, 10003})
        runMenuCommand(state, id, r.hooks());
    EXPECT_EQ(r.calls, (std::vector<std::string>{"folder /журналы/система", "folder /logs/recog", "settings", "destroy"}));

    // Relative log folders (the demo's "logs") open below the program's folder.
    r.calls.clear();
    state.liveMainConfig.systemLogPath = "logs";
    state.liveMainConfig.recogLogPath = "./recog";
    runMenuCommand(state, 10004, r.hooks());
    runMenuCommand(state, 10005, r.hooks());
    EXPECT_EQ(r.calls, (std::vector<std::string>{"folder " + (dir.path() / "bin" / "logs").string(),
                                                  "folder " + (dir.path() / "bin" / "recog").string()}));
    state.liveMainConfig.systemLogPath = cp1251("/журналы/система");
    state.liveMainConfig.recogLogPath = "/logs/recog";

    // Help: ../doc/Vexlane.pdf beside the program's folder, as a full path.
    r.calls.clear();
    runMenuCommand(state, 10006, r.hooks());
    std::filesystem::create_directories(dir.path() / "doc");
    std::ofstream(dir.path() / "doc" / "Vexlane.pdf") << "%PDF";
    runMenuCommand(state, 10006, r.hooks());
    EXPECT_EQ(r.calls, (std::vector<std::string>{"message Сообщение: Файл справки не найден",
                                                  "file " + (dir.path() / "doc" / "Vexlane.pdf").string()}));

    // About shows the version; the window goes when the end was asked for
    // while it was open.
    r.calls.clear();
    runMenuCommand(state, 10007, r.hooks());
    state.shuttingDown = true;
    runMenuCommand(state, 10007, r.hooks());
    const std::string about = "about Vexlane Распознавание автомобильных номеров\nВерсия 1.0.0.1";
    EXPECT_EQ(r.calls, (std::vector<std::string>{about, about, "destroy"}));
}

TEST(MainCommands, JournalCommandLineAndStart)
{
    EXPECT_EQ(journalCommandLine("/opt/vx/logs", "/opt/vx/configs"), "vxJournal \"/opt/vx/logs\" \"/opt/vx/configs\" hide");

    TempDir dir;
    maintenance::setSystemLog(std::make_unique<maintenance::LogBuffer>(dir.path() / "log.txt",
                                                                       maintenance::LogMode::appendQuiet));
    maintenance::systemLog()->setMinLevel(2);
    AppState state;
    state.baseDirectory = "/opt/моя папка";
    state.ConfigDirectory = cp1251("/opt/моя папка/configs");
    state.liveMainConfig.systemLogPath = cp1251("/opt/моя папка/logs");
    Recorded r;
    onJournalCommand(state, r.hooks());
    onJournalCommand(state, r.hooks());   // twice: two viewers, no check
    maintenance::setSystemLog(nullptr);

    ASSERT_EQ(r.starts.size(), 2u);
    EXPECT_EQ(r.calls, (std::vector<std::string>{"detached", "detached"}));
    const platform::ProcessStartInfo& info = r.starts[0];
    EXPECT_EQ(info.commandLine, "vxJournal \"/opt/моя папка/logs\" \"/opt/моя папка/configs\" hide");
    EXPECT_EQ(platform::splitCommandLine(info.commandLine),
              (std::vector<std::string>{"vxJournal", "/opt/моя папка/logs", "/opt/моя папка/configs", "hide"}));
    EXPECT_EQ(info.workingDirectory, "/opt/моя папка");
    EXPECT_EQ(info.searchFolder, "/opt/моя папка");
    EXPECT_EQ(state.status.get(), cp1251("Отправлена команда для запуска Журнала!"));
    const std::string log = readFileBytes(dir.path() / "log.txt");
    EXPECT_NE(log.find("][INFO]JournalStart\r\n"), std::string::npos) << log;
    EXPECT_NE(log.find("JournalStart"), log.rfind("JournalStart"));   // one line per press
}

class TrayAutorun : public ::testing::Test {
protected:
    TempDir dir;
    ScopedEnv home{"HOME", (dir.path() / "home").string()};
    ScopedEnv xdg{"XDG_CONFIG_HOME", ""};
    AppState state;
    ProcessActions actions;
    Recorded r;
    MainCommandHooks hooks;

    TrayAutorun()
    {
        std::filesystem::create_directories(dir.path() / "home");
        std::filesystem::create_directories(dir.path() / "bin" / "configs");
        state.baseDirectory = dir.path() / "bin";
        state.ConfigDirectory = (dir.path() / "bin" / "configs").string();
        actions.saveMainConfig = [this] { return saveMainConfig(state); };
        hooks = r.hooks();
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

TEST_F(TrayAutorun, TogglesTheEntryAndTheSavedFlag)
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
    EXPECT_TRUE(r.calls.empty());
}

TEST_F(TrayAutorun, AFailingAutostartFolderLeavesTheFileWithTheNewValueAndMemoryWithTheOld)
{
    std::ofstream(dir.path() / "home" / ".config") << "not a folder";
    CapturedStderr err;
    EXPECT_FALSE(toggleTrayAutorun(state, actions, hooks));
    EXPECT_FALSE(state.liveMainConfig.autoRunManager);
    EXPECT_TRUE(state.storedMainConfig.autoRunManager);
    EXPECT_EQ(savedFlag(), "\"autoRunManager\":true");
    EXPECT_EQ(r.calls, (std::vector<std::string>{"message Сообщение: Невозможно снять/установить автозапуск Менеджера!"}));
    EXPECT_EQ(err.text(), "Failed to open registry key. Error: 20\n");
}
