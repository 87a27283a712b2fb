// The settings commands: the order of saving, the requests and the status
// texts, with the dialogs answered by the test.
#include <gtest/gtest.h>

#include <algorithm>
#include <future>

#include "config/text_codec.h"
#include "core/service_wiring.h"
#include "config/camera_config.h"
#include "core/settings_commands.h"
#include "core/settings_fixture.h"
#include "core/startup.h"
#include "supervision/service_launcher.h"
#include "supervision/service_requests.h"
#include "supervision/service_test_support.h"
#include "support/installation.h"

using namespace vx;
using namespace vx::core;

namespace {

std::string cp(const char* utf8) { return config::utf8ToCp1251(utf8); }

class SettingsCommands : public ::testing::Test, protected test::SettingsWorld {};

} // namespace

TEST_F(SettingsCommands, SettingsSetAutorunBeforeTheFileAndKeepTheOldValueOnFailure)
{
    state.liveMainConfig.xWindow = 30;
    hooks.dialogs.settings = [this](config::MainConfig& record) {
        calls.push_back("dialog");
        record.autoRunManager = true;
        record.systemLevel = 9;
        record.xWindow = -1;
        return true;
    };
    autorunWorks = false;
    editSettings(state, actions, hooks);
    const std::vector<std::string> expected = {
        "dialog", "autorun Vexlane on",
        "message Сообщение: Невозможно снять/установить автозапуск Менеджера!",
        "save", "spawn", "control /UpdateConfig", "quota"};
    EXPECT_EQ(calls, expected);
    EXPECT_FALSE(state.liveMainConfig.autoRunManager);
    EXPECT_NE(mainFile().find("\"autoRunManager\":false"), std::string::npos) << mainFile();
    EXPECT_EQ(state.status.get(), cp("Настройки сохранены!"));

    // Unchanged autorun isn't touched; a cancel does nothing at all.
    calls.clear();
    autorunWorks = true;
    hooks.dialogs.settings = [](config::MainConfig&) { return true; };
    editSettings(state, actions, hooks);
    EXPECT_EQ(calls.front(), "save");
    calls.clear();
    state.status.set("x");
    hooks.dialogs.settings = [](config::MainConfig& record) {
        record.autoRunManager = true;
        return false;
    };
    editSettings(state, actions, hooks);
    EXPECT_TRUE(calls.empty());
    EXPECT_EQ(state.status.get(), "x");
}

TEST_F(SettingsCommands, SettingsKeepTheStreamListsThatStartsAndTheWatchRead)
{
    state.liveMainConfig.videoStreams = {"vx_stream0.json", "vx_stream4.json"};
    state.liveMainConfig.autoRunStreams = {true, false};
    state.liveMainConfig.perfLog = 1;
    // The form's read back: a fresh record, carrying only the two flags.
    hooks.dialogs.settings = [](config::MainConfig& record) {
        config::MainConfig fresh;
        fresh.startStatus = record.startStatus;
        fresh.globalRestart = record.globalRestart;
        record = fresh;
        return true;
    };
    editSettings(state, actions, hooks);
    EXPECT_EQ(state.liveMainConfig.videoStreams, (std::vector<std::string>{"vx_stream0.json", "vx_stream4.json"}));
    EXPECT_EQ(state.liveMainConfig.autoRunStreams, (std::vector<bool>{true, false}));
    EXPECT_EQ(state.liveMainConfig.perfLog, 0);   // what the form doesn't hold goes, as before
}

TEST_F(SettingsCommands, TheWatchSwitchSetsRestartControlOnlyWhenItChanged)
{
    bool answer = true;
    hooks.dialogs.processControl = [&answer](config::MainConfig& record) {
        record.globalRestart = !record.globalRestart;
        return answer;
    };
    editProcessControl(state, actions, hooks);
    EXPECT_EQ(state.restartControl, 10);
    EXPECT_EQ(state.status.get(), cp("Контроля перезапуска включен!"));
    EXPECT_NE(mainFile().find("\"globalRestart\":true"), std::string::npos);
    editProcessControl(state, actions, hooks);
    EXPECT_EQ(state.restartControl, 0);
    EXPECT_EQ(state.status.get(), cp("Контроль перезапуска выключен!"));

    hooks.dialogs.processControl = [](config::MainConfig&) { return true; };
    state.status.set("kept");
    editProcessControl(state, actions, hooks);
    EXPECT_EQ(state.status.get(), "kept");
    answer = false;
    hooks.dialogs.processControl = [](config::MainConfig&) { return false; };
    editProcessControl(state, actions, hooks);
    EXPECT_EQ(state.status.get(), "");
    EXPECT_EQ(std::count(calls.begin(), calls.end(), "save"), 3);
}

TEST_F(SettingsCommands, MessengerChannelsAreSavedAfterACancelButNobodyIsTold)
{
    hooks.dialogs.messengers = [](config::MessengersConfig& working, bool& channelsChanged) {
        working.channels[4].name = "gate";
        channelsChanged = true;
        working.port = 4444;   // as a cancelled dialog would never store it
        return false;
    };
    state.status.set("old");
    editMessengers(state, actions, hooks);
    EXPECT_TRUE(calls.empty());
    EXPECT_EQ(state.status.get(), "");
    config::MessengersConfig onDisk;
    config::loadMessengers(state.ConfigDirectory, onDisk, 1235);
    EXPECT_EQ(onDisk.channels[4].name, "gate");
    EXPECT_EQ(onDisk.port, 4444);

    // Cancelled with no slot accepted: the file stays as it is.
    hooks.dialogs.messengers = [](config::MessengersConfig& working, bool&) {
        working.channels[4].name = "lost";
        return false;
    };
    editMessengers(state, actions, hooks);
    config::loadMessengers(state.ConfigDirectory, onDisk, 1235);
    EXPECT_EQ(onDisk.channels[4].name, "gate");

    bool on = false;
    hooks.dialogs.messengers = [&on](config::MessengersConfig& working, bool&) {
        working.on = on;
        return true;
    };
    editMessengers(state, actions, hooks);
    EXPECT_EQ(state.status.get(), cp("Отправлена команда для остановки сервиса мессенджеров!"));
    on = true;
    editMessengers(state, actions, hooks);
    EXPECT_EQ(state.status.get(), cp("Отправлена команда для перезапуска сервиса мессенджеров!"));
    const std::vector<std::string> expected = {"mes /StopServer", "mes /StopServer restart"};
    EXPECT_EQ(calls, expected);
}

TEST_F(SettingsCommands, ControlServiceRestartsAndRewritesStreamsOnlyForANewPort)
{
    hooks.dialogs.control = [](config::ControlSrvConfig& working) {
        working.httpLogger = true;
        return true;
    };
    editControlService(state, actions, hooks);
    EXPECT_EQ(calls, std::vector<std::string>{"control /StopServer restart"});
    EXPECT_EQ(state.status.get(), cp("Отправлена команда для перезапуска сервиса управления!"));
    EXPECT_TRUE(state.controlConfig.httpLogger);
    hooks.dialogs.control = [](config::ControlSrvConfig& working) {
        working.port = 2345;
        return true;
    };
    editControlService(state, actions, hooks);
    EXPECT_EQ(calls.back(), "rewrite streams");
    config::ControlSrvConfig onDisk;
    config::loadControlGlobal(state.ConfigDirectory, onDisk);
    EXPECT_EQ(onDisk.port, 2345);

    calls.clear();
    state.status.set("x");
    hooks.dialogs.control = [](config::ControlSrvConfig& working) {
        working.port = 3000;
        return false;
    };
    editControlService(state, actions, hooks);
    EXPECT_TRUE(calls.empty());
    EXPECT_EQ(state.status.get(), "");
    EXPECT_EQ(state.controlConfig.port, 2345);
}

// A file that can't be written (its ".new" is taken by a folder): the
// operator is told after the OK, nothing is restarted, the record keeps what
// the file holds and the settings aren't announced as saved.
TEST_F(SettingsCommands, AFailedSaveIsShownAndNothingActsOnIt)
{
    struct Case {
        const char* file;
        std::function<void()> edit;
    };
    hooks.dialogs.settings = [](config::MainConfig& record) { record.xWindow = 5; return true; };
    hooks.dialogs.recognition = [](config::RecognitionSrvConfig& working) { working.port = 4444; return true; };
    hooks.dialogs.control = [](config::ControlSrvConfig& working) { working.port = 5555; return true; };
    hooks.dialogs.messengers = [](config::MessengersConfig& working, bool&) { working.port = 6666; return true; };
    const std::vector<Case> cases = {
        {"vx_main_config.json", [this] { editSettings(state, actions, hooks); }},
        {"vx_recog_config_srv.json", [this] { editRecognitionService(state, actions, hooks); }},
        {"vx_control_config.json", [this] { editControlService(state, actions, hooks); }},
        {"vx_mess_config.json", [this] { editMessengers(state, actions, hooks); }},
    };
    for (const Case& c : cases) {
        std::filesystem::create_directories(dir.path() / "configs" / (std::string(c.file) + ".new"));
        calls.clear();
        state.status.set("x");
        c.edit();
        EXPECT_NE(std::find(calls.begin(), calls.end(),
                            std::string("message Сообщение: Не удалось сохранить файл ") + c.file + "!"),
                  calls.end()) << c.file;
        EXPECT_EQ(std::count_if(calls.begin(), calls.end(), [](const std::string& call) {
                      return call.find("/StopServer") != std::string::npos || call == "rewrite streams";
                  }), 0) << c.file;
    }
    EXPECT_NE(state.status.get(), cp("Настройки сохранены!"));
    EXPECT_NE(state.recognitionConfig.port, 4444);
    EXPECT_NE(state.controlConfig.port, 5555);
    EXPECT_NE(state.messengersConfig.port, 6666);
}
