// The settings, service, messenger, About and settings migration dialogs as
// Win32 dialogs, opened through the manager's own commands and driven with
// the messages their controls take: what the operator types reaches the
// form, a refused OK shows its box, and OK saves.
#include <gtest/gtest.h>


#include "config/messenger_config.h"
#include "config/text_codec.h"
#include "core/main_commands.h"
#include "core/settings_commands.h"
#include "core/settings_fixture.h"
#include "core/startup.h"
#include "support/captured_stderr.h"
#include "support/temp_dir.h"
#include "support/text_file.h"
#include "support/win32/dialog_driver.h"
#include "ui/win32/about_window.h"
#include "ui/win32/about_window_ids.h"
#include "ui/win32/settings_migration_window.h"
#include "ui/win32/settings_migration_window_ids.h"
#include "ui/win32/settings_windows.h"
#include "ui/win32/settings_windows_ids.h"

using namespace vx;
using namespace vx::test;
using Calls = std::vector<std::string>;
namespace fs = std::filesystem;

namespace {

std::string cp(const char* utf8) { return config::utf8ToCp1251(utf8); }

// The settings commands' world with the Win32 dialogs, whose folder picker
// answers with a Cyrillic folder.
struct DialogWorld : test::SettingsWorld {
    DialogWorld()
    {
        hooks.dialogs = ui::win32::settingsDialogs(nullptr, [this](const std::string& start) {
            calls.push_back("pick " + config::cp1251ToUtf8(start));
            return std::optional<std::string>(cp("C:\\видео"));
        });
    }
};

bool holds(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

} // namespace

TEST(SettingsWindows, SettingsRefuseAMissingLogFolderThenSaveAndTheWatchSwitchFollows)
{
    DialogWorld w;
    w.state.liveMainConfig.systemLevel = 9;
    w.state.liveMainConfig.videoPath = "C:\\old";
    const std::string folder = utf8Path(w.dir.path());
    const std::string missing = utf8Path(w.dir.path() / "missing");
    Calls boxes;
    DialogScript script([&] {
        HWND d = waitForDialog("Настройки");
        ASSERT_TRUE(d);
        shoot(d, "settings");
        EXPECT_EQ(selectedIndex(d, IDC_SETTINGS_SYSTEM_LEVEL), 5);   // 9 shows as "Critical"
        EXPECT_EQ(shownText(d, IDC_SETTINGS_SYSTEM_LOG_PATH), folder);
        click(d, IDC_SETTINGS_VIDEO_BROWSE);
        EXPECT_EQ(shownText(d, IDC_SETTINGS_VIDEO_PATH), "C:\\видео");
        EXPECT_EQ(shownText(d, IDC_SETTINGS_REPORTS_PATH), "");

        typeText(d, IDC_SETTINGS_SYSTEM_LOG_PATH, missing.c_str());
        typeText(d, IDC_SETTINGS_RECOG_LOG_PATH, missing.c_str());
        click(d, IDOK);
        boxes.push_back(answerMessageBox("Сообщение"));
        boxes.push_back(answerMessageBox("Сообщение", IDOK, 300ms));   // one box only
        typeText(d, IDC_SETTINGS_SYSTEM_LOG_PATH, folder.c_str());
        typeText(d, IDC_SETTINGS_RECOG_LOG_PATH, folder.c_str());
        choose(d, IDC_SETTINGS_SYSTEM_LEVEL, 1);
        typeText(d, IDC_SETTINGS_VIDEO_CHUNK, "");
        typeText(d, IDC_SETTINGS_TIME_LIFE, "30");
        click(d, IDC_SETTINGS_AUTORUN);
        click(d, IDOK);
        EXPECT_TRUE(waitGone(d));
    });
    core::editSettings(w.state, w.actions, w.hooks);
    ASSERT_TRUE(script.finished());
    EXPECT_EQ(boxes, (Calls{"Несуществующая директория для журнала распознавания!", ""}));
    std::string main = w.file("vx_main_config.json");
    EXPECT_TRUE(holds(main, "\"systemLevel\":1,")) << main;
    EXPECT_TRUE(holds(main, "\"videoChunk\":300,")) << main;   // empty: the working default
    EXPECT_TRUE(holds(main, "\"timeLife\":30,")) << main;
    EXPECT_TRUE(holds(main, "\"autoRunManager\":true")) << main;
    EXPECT_TRUE(holds(main, "\"videoPath\":\"C:\\\\видео\"")) << main;

    // "Контроль": the one switch, saved; the watch is switched on.
    DialogScript watch([&] {
        HWND d = waitForDialog("Контроль за запущенными процессами");
        ASSERT_TRUE(d);
        shoot(d, "process_control");
        EXPECT_FALSE(isChecked(d, IDC_PROCESS_CONTROL_ON));
        click(d, IDC_PROCESS_CONTROL_ON);
        click(d, IDOK);
        EXPECT_TRUE(waitGone(d));
    });
    core::editProcessControl(w.state, w.actions, w.hooks);
    ASSERT_TRUE(watch.finished());
    main = w.file("vx_main_config.json");
    EXPECT_TRUE(holds(main, "\"globalRestart\":true")) << main;
}

TEST(SettingsWindows, ServiceDialogsAskBeforeTheRestartAndSaveTheirFiles)
{
    DialogWorld w;
    Calls boxes;
    DialogScript script([&] {
        HWND d = waitForDialog("Глобальные настройки распознавания автомобильных номеров");
        ASSERT_TRUE(d);
        click(d, IDC_RECOG_SRV_UNLOCK);
        EXPECT_NE(answerMessageBox("Осторожно!", IDYES), "");
        shoot(d, "recognition_service");
        typeText(d, IDC_RECOG_SRV_GPU_OBJECTS, "4");
        typeText(d, IDC_RECOG_SRV_PORT, "8090");
        typeText(d, IDC_RECOG_SRV_MIN_WIDTH, "80");
        click(d, IDC_RECOG_SRV_COUNTRY_FIRST + 1);
        choose(d, IDC_RECOG_SRV_MODELS, 3);
        click(d, IDOK);
        boxes.push_back(answerMessageBox("Осторожно!", IDYES));
        EXPECT_TRUE(waitGone(d));
    });
    core::editRecognitionService(w.state, w.actions, w.hooks);
    ASSERT_TRUE(script.finished());
    EXPECT_EQ(boxes, Calls{"После этого действия система распознавания будет перезагружена! Продолжить?"});
    const std::string recognition = w.file("vx_recog_config_srv.json");
    for (const char* line : {"\"port\":8090,", "\"minPlateWidth\":80,", "\"gpuObjects\":4, ", "\"modeConfig\":3,"})
        EXPECT_TRUE(holds(recognition, line)) << line << "\n" << recognition;
    EXPECT_TRUE(holds(recognition, "\"plateTemplates\":[\"az\"]")) << recognition;

    // The control service: a stored "Не использовать" shows, the single file is chosen.
    w.state.controlConfig.modeDB = 0;
    DialogScript control([&] {
        HWND d = waitForDialog("Настройки сервиса управления");
        ASSERT_TRUE(d);
        EXPECT_TRUE(isChecked(d, IDC_CONTROL_SRV_DB_NONE));
        click(d, IDC_CONTROL_SRV_DB_SINGLE);
        click(d, IDC_CONTROL_SRV_EQUAL_LATIN_CYR);
        typeText(d, IDC_CONTROL_SRV_PORT, "1236");
        shoot(d, "control_service");
        click(d, IDOK);
        EXPECT_EQ(answerMessageBox("Осторожно!", IDYES),
                  "После этого действия система управления будет перезагружена! Продолжить?");
        EXPECT_TRUE(waitGone(d));
    });
    core::editControlService(w.state, w.actions, w.hooks);
    ASSERT_TRUE(control.finished());
    const std::string controlFile = w.file("vx_control_config.json");
    EXPECT_TRUE(holds(controlFile, "\"port\":1236,")) << controlFile;
    EXPECT_TRUE(holds(controlFile, "\"modeDB\":1,")) << controlFile;
    EXPECT_TRUE(w.state.controlConfig.equalLatinCyr);
}

TEST(SettingsWindows, AChannelAcceptedBeforeCancelIsSavedAndOkWithTheServiceOffStopsIt)
{
    DialogWorld w;
    config::MessengersConfig stored;
    stored.port = 5000;
    stored.on = true;
    stored.channels[0].on = true;
    ASSERT_TRUE(config::saveMessengers(w.state.ConfigDirectory, stored));
    DialogScript script([&] {
        HWND d = waitForDialog("Сервис мессенджеров");
        ASSERT_TRUE(d);
        EXPECT_EQ(shownText(d, IDC_MESSENGERS_PORT), "5000");
        EXPECT_TRUE(isChecked(d, IDC_MESSENGERS_ON));
        click(d, IDC_MESSENGERS_SLOT_FIRST + 2);
        HWND c = waitForDialog("Слот 3");
        ASSERT_TRUE(c);
        choose(c, IDC_CHANNEL_TYPE, 2);
        EXPECT_FALSE(isShown(c, IDC_CHANNEL_CHAT_ID));
        EXPECT_TRUE(isShown(c, IDC_CHANNEL_SERVER));
        click(c, IDC_CHANNEL_DELAY_ANY);
        typeText(c, IDC_CHANNEL_NAME, "Почта");
        typeText(c, IDC_CHANNEL_SERVER, "smtp.example.org");
        typeText(c, IDC_CHANNEL_DELAY_ANY_MS, "100000");
        click(c, IDC_CHANNEL_ON);
        shoot(c, "messenger_channel");
        click(c, IDOK);
        EXPECT_TRUE(waitGone(c));
        shoot(d, "messengers");   // slots 1 and 3 white on green
        typeText(d, IDC_MESSENGERS_PORT, "6000");
        click(d, IDCANCEL);
        EXPECT_TRUE(waitGone(d));
    });
    core::editMessengers(w.state, w.actions, w.hooks);
    ASSERT_TRUE(script.finished());
    std::string file = w.file("vx_mess_config.json");
    EXPECT_TRUE(holds(file, "\"port\":5000,")) << file;
    EXPECT_TRUE(holds(file, "smtp.example.org")) << file;
    EXPECT_TRUE(holds(file, "\"delayAnyMS\":100000")) << file;
    EXPECT_EQ(w.state.messengersConfig.channels[2].name, cp("Почта"));
    EXPECT_EQ(w.state.messengersConfig.channels[2].typeMessenger, 2);
    EXPECT_EQ(w.state.messengersConfig.channels[2].channelID, 3);

    // OK with the service switched off stops it.
    DialogScript off([&] {
        HWND d = waitForDialog("Сервис мессенджеров");
        ASSERT_TRUE(d);
        click(d, IDC_MESSENGERS_ON);
        click(d, IDOK);
        EXPECT_TRUE(waitGone(d));
    });
    core::editMessengers(w.state, w.actions, w.hooks);
    ASSERT_TRUE(off.finished());
    EXPECT_FALSE(w.state.messengersConfig.on);
}

TEST(SettingsWindows, AboutShowsTheVersionAndTheMigrationCopiesOnlyOnceItCan)
{
    DialogWorld w;
    w.state.versionText = "2.5.1";
    w.state.shuttingDown = true;   // asked for while the dialog was open
    core::MainCommandHooks commands;
    commands.showAbout = [&w](const std::string& text) {
        w.calls.push_back("about");
        ui::win32::showAboutDialog(nullptr, text);
    };
    commands.destroyWindow = [&w] { w.calls.push_back("destroy"); };
    std::string about;
    DialogScript script([&] {
        HWND d = waitForDialog("О программе");
        ASSERT_TRUE(d);
        about = shownText(d, IDC_ABOUT_TEXT);
        shoot(d, "about");
        click(d, IDOK);
        EXPECT_TRUE(waitGone(d));
    });
    core::runMenuCommand(w.state, core::menuAbout, commands);
    ASSERT_TRUE(script.finished());
    EXPECT_EQ(about, "Vexlane Распознавание автомобильных номеров\nВерсия 2.5.1");
    EXPECT_EQ(w.calls, (Calls{"about", "destroy"}));

    // The earlier installation has no configs yet: OK shows why and stays.
    const fs::path earlier = w.dir.path() / "earlier";
    fs::create_directories(earlier);
    w.state.previousInstallPath = earlier.string();
    w.state.migrateFolders = true;
    std::string text, refusal;
    bool tickedAtFirst = false;
    DialogScript migration([&] {
        HWND d = waitForDialog("Помощь в переносе настроек из последней запущенной программы");
        ASSERT_TRUE(d);
        text = shownText(d, IDC_MIGRATION_TEXT);
        tickedAtFirst = isChecked(d, IDC_MIGRATION_MOVE_FOLDERS);
        shoot(d, "settings_migration");
        click(d, IDOK);
        refusal = answerMessageBox("Сообщение");
        fs::create_directories(earlier / "configs");
        writeFileBytes(earlier / "configs" / "receiversamples.json", "[]");
        click(d, IDC_MIGRATION_MOVE_FOLDERS);
        click(d, IDOK);
        EXPECT_TRUE(waitGone(d));
    });
    ui::win32::offerSettingsMigration(nullptr, w.state);
    ASSERT_TRUE(migration.finished());
    EXPECT_TRUE(holds(text, utf8Path(earlier))) << text;
    EXPECT_TRUE(tickedAtFirst);
    EXPECT_EQ(refusal.rfind("Настройки не удалось перенести: ", 0), 0u) << refusal;
    EXPECT_EQ(readText(w.dir.path() / "configs" / "receiversamples.json"), "[]");
    EXPECT_FALSE(w.state.migrateFolders);
}
