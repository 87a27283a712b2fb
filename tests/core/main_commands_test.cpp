#include <gtest/gtest.h>

#include <fstream>

#include "config/text_codec.h"
#include "core/main_commands.h"
#include "core/startup.h"
#include "maintenance/system_log.h"
#include "platform/paths.h"
#include "support/captured_stderr.h"
#include "support/temp_dir.h"
#include "support/text_file.h"

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
        h.openFolder = [this](const std::filesystem::path& p) { calls.push_back("folder " + test::utf8Path(p)); };
        h.openFile = [this](const std::filesystem::path& p) { calls.push_back("file " + test::utf8Path(p)); };
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
    const std::string systemLogs = test::utf8Path(dir.path() / u8"журналы" / u8"система");
    const std::string recogLogs = test::utf8Path(dir.path() / "logs" / "recog");
    state.liveMainConfig.systemLogPath = cp1251(systemLogs.c_str());
    state.liveMainConfig.recogLogPath = recogLogs;
    Recorded r;
    for (int id : {10001, 10008, 11003, 11004, 1042, 10000})
        runMenuCommand(state, id, r.hooks());
    EXPECT_TRUE(r.calls.empty());

    for (int id : {10004, 10005, 10002, 10003})
        runMenuCommand(state, id, r.hooks());
    EXPECT_EQ(r.calls, (std::vector<std::string>{"folder " + systemLogs, "folder " + recogLogs, "settings", "destroy"}));

    // Relative log folders (the demo's "logs") open below the program's folder.
    r.calls.clear();
    state.liveMainConfig.systemLogPath = "logs";
    state.liveMainConfig.recogLogPath = "./recog";
    runMenuCommand(state, 10004, r.hooks());
    runMenuCommand(state, 10005, r.hooks());
    EXPECT_EQ(r.calls, (std::vector<std::string>{"folder " + test::utf8Path(dir.path() / "bin" / "logs"),
                                                  "folder " + test::utf8Path(dir.path() / "bin" / "recog")}));

    // Help: ../doc/Vexlane.pdf beside the program's folder, as a full path.
    r.calls.clear();
    runMenuCommand(state, 10006, r.hooks());
    std::filesystem::create_directories(dir.path() / "doc");
    std::ofstream(dir.path() / "doc" / "Vexlane.pdf") << "%PDF";
    runMenuCommand(state, 10006, r.hooks());
    EXPECT_EQ(r.calls, (std::vector<std::string>{"message Сообщение: Файл справки не найден",
                                                  "file " + test::utf8Path(dir.path() / "doc" / "Vexlane.pdf")}));

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
    const std::string journal = std::string("vxJournal") + platform::executableSuffix;
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
    EXPECT_EQ(info.commandLine, journal + " \"/opt/моя папка/logs\" \"/opt/моя папка/configs\" hide");
    EXPECT_EQ(info.workingDirectory, "/opt/моя папка");
    EXPECT_EQ(info.searchFolder, "/opt/моя папка");
    EXPECT_EQ(state.status.get(), cp1251("Отправлена команда для запуска Журнала!"));
    const std::string log = readFileBytes(dir.path() / "log.txt");
    EXPECT_NE(log.find("][INFO]JournalStart\r\n"), std::string::npos) << log;
    EXPECT_NE(log.find("JournalStart"), log.rfind("JournalStart"));   // one line per press
}

