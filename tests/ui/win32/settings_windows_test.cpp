// The settings, service, messenger, About and settings migration dialogs as
// Win32 dialogs, opened through the manager's own commands and driven with
// the messages their controls take: each draws, what the operator types
// reaches its form, and OK saves. The forms' own rules are the form tests'.
#include <gtest/gtest.h>

#include "config/messenger_config.h"
#include "config/text_codec.h"
#include "core/settings_commands.h"
#include "core/settings_fixture.h"
#include "core/startup.h"
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
namespace fs = std::filesystem;

namespace {

// The settings commands' world with the Win32 dialogs, whose folder picker
// answers with a Cyrillic folder.
struct DialogWorld : test::SettingsWorld {
    DialogWorld()
    {
        hooks.dialogs = ui::win32::settingsDialogs(nullptr, [](const std::string&) {
            return std::optional<std::string>(config::utf8ToCp1251("C:\\видео"));
        });
    }
};

bool holds(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

} // namespace

TEST(SettingsWindows, SettingsSaveAndTheWatchSwitchFollows)
{
    DialogWorld w;
    const std::string folder = utf8Path(w.dir.path());
    DialogScript script([&] {
        HWND d = waitForDialog("Настройки");
        ASSERT_TRUE(d);
        shoot(d, "settings");
        click(d, IDC_SETTINGS_VIDEO_BROWSE);
        typeText(d, IDC_SETTINGS_RECOG_LOG_PATH, folder.c_str());
        typeText(d, IDC_SETTINGS_TIME_LIFE, "30");
        click(d, IDOK);
        EXPECT_TRUE(waitGone(d));
    });
    core::editSettings(w.state, w.actions, w.hooks);
    ASSERT_TRUE(script.finished());
    std::string main = w.file("vx_main_config.json");
    EXPECT_TRUE(holds(main, "\"timeLife\":30,")) << main;
    EXPECT_TRUE(holds(main, "\"videoPath\":\"C:\\\\видео\"")) << main;

    DialogScript watch([&] {
        HWND d = waitForDialog("Контроль за запущенными процессами");
        ASSERT_TRUE(d);
        shoot(d, "process_control");
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
    DialogScript script([&] {
        HWND d = waitForDialog("Глобальные настройки распознавания автомобильных номеров");
        ASSERT_TRUE(d);
        click(d, IDC_RECOG_SRV_UNLOCK);
        EXPECT_NE(answerMessageBox("Осторожно!", IDYES), "");
        shoot(d, "recognition_service");
        typeText(d, IDC_RECOG_SRV_PORT, "8090");
        click(d, IDOK);
        EXPECT_NE(answerMessageBox("Осторожно!", IDYES), "");
        EXPECT_TRUE(waitGone(d));
    });
    core::editRecognitionService(w.state, w.actions, w.hooks);
    ASSERT_TRUE(script.finished());
    const std::string recognition = w.file("vx_recog_config_srv.json");
    EXPECT_TRUE(holds(recognition, "\"port\":8090,")) << recognition;

    DialogScript control([&] {
        HWND d = waitForDialog("Настройки сервиса управления");
        ASSERT_TRUE(d);
        shoot(d, "control_service");
        click(d, IDC_CONTROL_SRV_DB_SINGLE);
        click(d, IDOK);
        EXPECT_NE(answerMessageBox("Осторожно!", IDYES), "");
        EXPECT_TRUE(waitGone(d));
    });
    core::editControlService(w.state, w.actions, w.hooks);
    ASSERT_TRUE(control.finished());
    const std::string controlFile = w.file("vx_control_config.json");
    EXPECT_TRUE(holds(controlFile, "\"modeDB\":1,")) << controlFile;
}

TEST(SettingsWindows, ASlotOpensItsChannelWhoseOkIsKept)
{
    DialogWorld w;
    DialogScript script([&] {
        HWND d = waitForDialog("Сервис мессенджеров");
        ASSERT_TRUE(d);
        click(d, IDC_MESSENGERS_SLOT_FIRST + 2);
        HWND c = waitForDialog("Слот 3");
        ASSERT_TRUE(c);
        choose(c, IDC_CHANNEL_TYPE, 2);
        EXPECT_FALSE(isShown(c, IDC_CHANNEL_CHAT_ID));
        typeText(c, IDC_CHANNEL_SERVER, "smtp.example.org");
        click(c, IDC_CHANNEL_ON);
        shoot(c, "messenger_channel");
        click(c, IDOK);
        EXPECT_TRUE(waitGone(c));
        shoot(d, "messengers");   // slot 3 white on green
        click(d, IDCANCEL);
        EXPECT_TRUE(waitGone(d));
    });
    core::editMessengers(w.state, w.actions, w.hooks);
    ASSERT_TRUE(script.finished());
    EXPECT_TRUE(holds(w.file("vx_mess_config.json"), "smtp.example.org"));
    EXPECT_EQ(w.state.messengersConfig.channels[2].typeMessenger, 2);
}

TEST(SettingsWindows, AboutShowsItsTextAndTheMigrationCopiesOnlyOnceItCan)
{
    DialogWorld w;
    std::string about;
    DialogScript script([&] {
        HWND d = waitForDialog("О программе");
        ASSERT_TRUE(d);
        about = shownText(d, IDC_ABOUT_TEXT);
        shoot(d, "about");
        click(d, IDOK);
        EXPECT_TRUE(waitGone(d));
    });
    ui::win32::showAboutDialog(nullptr, config::utf8ToCp1251("Vexlane\nВерсия 2.5.1"));
    ASSERT_TRUE(script.finished());
    EXPECT_EQ(about, "Vexlane\nВерсия 2.5.1");

    // The earlier installation has no configs yet: OK shows why and stays.
    const fs::path earlier = w.dir.path() / "earlier";
    fs::create_directories(earlier);
    w.state.previousInstallPath = earlier.string();
    w.state.migrateFolders = true;
    std::string refusal;
    DialogScript migration([&] {
        HWND d = waitForDialog("Помощь в переносе настроек из последней запущенной программы");
        ASSERT_TRUE(d);
        EXPECT_TRUE(holds(shownText(d, IDC_MIGRATION_TEXT), utf8Path(earlier)));
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
    EXPECT_EQ(refusal.rfind("Настройки не удалось перенести: ", 0), 0u) << refusal;
    EXPECT_EQ(readText(w.dir.path() / "configs" / "receiversamples.json"), "[]");
    EXPECT_FALSE(w.state.migrateFolders);
}
