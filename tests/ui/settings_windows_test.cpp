// The service and settings windows on the offscreen platform: what the
// operator does reaches the forms, and what the forms decide is shown.
// With VEXLANE_SHOTS set to a folder, each window is also saved there as a
// picture, for looking at on a real display.
#include <gtest/gtest.h>

#include <QCheckBox>
#include <QFontMetrics>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTimer>
#include <cstdlib>

#include "config/text_codec.h"
#include "support/qt_application.h"
#include "ui/qt/qt_text.h"
#include "ui/qt/settings_windows.h"

using namespace vx;
using namespace vx::dialogs;

namespace {

void shoot(QWidget& window, const char* name)
{
    const char* folder = std::getenv("VEXLANE_SHOTS");
    if (!folder)
        return;
    window.show();
    window.adjustSize();
    QApplication::processEvents();
    window.grab().save(QString::fromUtf8(folder) + "/" + name + ".png");
}

// The title's text in the title bar's bold font fits in the window.
void expectTitleFits(QWidget& window)
{
    QFont font = window.font();
    font.setBold(true);
    const int text = QFontMetrics(font).horizontalAdvance(window.windowTitle());
    EXPECT_GE(window.width(), text) << window.windowTitle().toStdString();
    EXPECT_GE(window.minimumWidth(), text) << window.windowTitle().toStdString();
}

class SettingsWindows : public ::testing::Test {
protected:
    SettingsWindows() { test::qtApplication(); }
    ScriptedMessages messages;
};

} // namespace

TEST_F(SettingsWindows, TheChannelWindowShowsTheFieldsOfItsType)
{
    config::MessengerChannel record;
    record.chatID = "-100";
    MessengerChannelForm form(record, 1, messages);
    ui::MessengerChannelWindow window(form, nullptr);
    window.start();
    EXPECT_EQ(window.windowTitle(), ui::literal("Слот 2"));
    EXPECT_FALSE(window.chatID->isHidden());
    EXPECT_TRUE(window.server->isHidden());
    EXPECT_TRUE(window.delaySameMS->isEnabled());
    EXPECT_FALSE(window.delayAnyMS->isEnabled());
    shoot(window, "channel_telegram");

    window.typeMessenger->setCurrentIndex(2);
    Q_EMIT window.typeMessenger->activated(2);
    EXPECT_TRUE(window.chatID->isHidden());
    EXPECT_FALSE(window.server->isHidden());
    EXPECT_FALSE(window.mailPort->isHidden());
    EXPECT_EQ(window.tokenLabel->text(), ui::literal("Пароль (на диске хранится в зашифрованном виде):"));
    EXPECT_EQ(window.chatID->text(), "-100");   // hidden, not cleared
    shoot(window, "channel_email");
    window.delayAny->click();
    EXPECT_TRUE(window.delayAnyMS->isEnabled());
    window.reject();
}

TEST_F(SettingsWindows, SlotButtonsAreGreenWhileTheirChannelIsOn)
{
    config::MessengersConfig working;
    working.channels[0].on = true;
    MessengerServiceForm form(
        working,
        [&working](int slot) {
            working.channels[static_cast<std::size_t>(slot)].on = true;
            return true;
        },
        messages);
    ui::MessengerServiceWindow window(form, nullptr);
    window.start();
    EXPECT_NE(window.slotButtons[0]->styleSheet().indexOf("rgb(0, 128, 0)"), -1);
    EXPECT_TRUE(window.slotButtons[7]->styleSheet().isEmpty());
    EXPECT_EQ(window.slotButtons[7]->text(), ui::literal("Слот 8"));
    window.slotButtons[7]->click();
    EXPECT_TRUE(form.channelsChanged);
    EXPECT_NE(window.slotButtons[7]->styleSheet().indexOf("rgb(0, 128, 0)"), -1);
    shoot(window, "messengers");
    window.reject();
}

TEST_F(SettingsWindows, TheFolderButtonFillsItsOwnFieldThroughThePicker)
{
    config::MainConfig record;
    record.videoPath = "/old";
    std::string started;
    SettingsForm form(
        record,
        [&started](const std::string& start) -> std::optional<std::string> {
            started = start;
            return config::utf8ToCp1251("/видео");
        },
        messages);
    ui::SettingsWindow window(form, nullptr);
    window.start();
    EXPECT_EQ(window.systemLevel->currentText(), "Warning");
    window.videoBrowse->click();
    EXPECT_EQ(started, "/old");
    EXPECT_EQ(window.videoPath->text(), ui::literal("/видео"));
    EXPECT_EQ(window.reportsPath->text(), "");
    shoot(window, "settings");
    window.reject();
    EXPECT_EQ(record.videoPath, config::utf8ToCp1251("/видео"));
}

TEST_F(SettingsWindows, TheBlockButtonUnlocksTheCountAfterYes)
{
    config::RecognitionSrvConfig record;
    RecognitionServiceForm form(record, messages);
    ui::RecognitionServiceWindow window(form, nullptr);
    window.start();
    EXPECT_FALSE(window.gpuObjects->isEnabled());
    EXPECT_EQ(window.ok->text(), ui::literal("Перезапуск сервиса"));
    expectTitleFits(window);   // "Глобальные настройки распознавания автомобильных номеров"
    messages.answer(true);
    window.unlock->click();
    EXPECT_TRUE(window.gpuObjects->isEnabled());
    shoot(window, "recognition_service");
    window.reject();
}

TEST_F(SettingsWindows, ControlAndWatchWindowsBindTheirChoices)
{
    config::ControlSrvConfig control;
    control.modeDB = 0;
    ControlServiceForm controlForm(control, messages);
    ui::ControlServiceWindow controlWindow(controlForm, nullptr);
    controlWindow.start();
    EXPECT_TRUE(controlWindow.modeDB[0]->isChecked());
    controlWindow.modeDB[1]->click();
    EXPECT_EQ(controlForm.modeDB.chosen, 1);
    expectTitleFits(controlWindow);
    shoot(controlWindow, "control_service");
    controlWindow.reject();

    config::MainConfig main;
    ProcessControlForm watchForm(main, messages);
    ui::ProcessControlWindow watchWindow(watchForm, nullptr);
    watchWindow.start();
    expectTitleFits(watchWindow);
    watchWindow.globalRestart->click();
    watchWindow.ok->click();
    EXPECT_TRUE(main.globalRestart);
    shoot(watchWindow, "process_control");
}
