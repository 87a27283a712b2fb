// The service and settings windows on the offscreen platform: what the
// operator does reaches the forms, and what the forms decide is shown. The
// forms' own rules are the form tests' business.
#include <gtest/gtest.h>

#include <QCheckBox>
#include <QComboBox>
#include <QFontMetrics>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>

#include "config/text_codec.h"
#include "support/qt_application.h"
#include "ui/qt/qt_text.h"
#include "ui/qt/settings_windows.h"

using namespace vx;
using namespace vx::dialogs;

namespace {

class SettingsWindows : public ::testing::Test {
protected:
    SettingsWindows() { test::qtApplication(); }
    ScriptedMessages messages;
};

} // namespace

TEST_F(SettingsWindows, TheChannelWindowShowsTheFieldsOfItsType)
{
    config::MessengerChannel record;
    MessengerChannelForm form(record, 1, messages);
    ui::MessengerChannelWindow window(form, nullptr);
    window.start();
    EXPECT_EQ(window.windowTitle(), ui::literal("Слот 2"));
    window.typeMessenger->setCurrentIndex(2);
    Q_EMIT window.typeMessenger->activated(2);
    EXPECT_FALSE(window.server->isHidden());
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
    window.slotButtons[7]->click();
    EXPECT_NE(window.slotButtons[7]->styleSheet().indexOf("rgb(0, 128, 0)"), -1);
    window.reject();
}

TEST_F(SettingsWindows, TheFolderButtonFillsItsOwnFieldThroughThePicker)
{
    config::MainConfig record;
    SettingsForm form(
        record, [](const std::string&) { return std::optional<std::string>(config::utf8ToCp1251("/видео")); },
        messages);
    ui::SettingsWindow window(form, nullptr);
    window.start();
    window.videoBrowse->click();
    EXPECT_EQ(window.videoPath->text(), ui::literal("/видео"));
    window.reject();
}

// The service windows: the long titles fit in the title bar's bold font,
// and the clicks reach their forms.
TEST_F(SettingsWindows, ServiceWindowsFitTheirTitlesAndBindTheirChoices)
{
    auto expectTitleFits = [](QWidget& window) {
        QFont font = window.font();
        font.setBold(true);
        const int text = QFontMetrics(font).horizontalAdvance(window.windowTitle());
        EXPECT_GE(window.minimumWidth(), text) << window.windowTitle().toStdString();
    };
    config::RecognitionSrvConfig recognition;
    RecognitionServiceForm recognitionForm(recognition, messages);
    ui::RecognitionServiceWindow recognitionWindow(recognitionForm, nullptr);
    recognitionWindow.start();
    expectTitleFits(recognitionWindow);
    messages.answer(true);
    recognitionWindow.unlock->click();
    EXPECT_TRUE(recognitionWindow.gpuObjects->isEnabled());
    recognitionWindow.reject();

    config::ControlSrvConfig control;
    control.modeDB = 0;
    ControlServiceForm controlForm(control, messages);
    ui::ControlServiceWindow controlWindow(controlForm, nullptr);
    controlWindow.start();
    expectTitleFits(controlWindow);
    controlWindow.modeDB[1]->click();
    EXPECT_EQ(controlForm.modeDB.chosen, 1);
    controlWindow.reject();

    config::MainConfig main;
    ProcessControlForm watchForm(main, messages);
    ui::ProcessControlWindow watchWindow(watchForm, nullptr);
    watchWindow.start();
    expectTitleFits(watchWindow);
    watchWindow.globalRestart->click();
    watchWindow.ok->click();
    EXPECT_TRUE(main.globalRestart);
}
