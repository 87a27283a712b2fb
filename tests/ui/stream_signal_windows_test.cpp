// The signal, recognition, and signals and reports windows on the offscreen
// platform: the widgets carry what the operator does to the forms and show
// what the forms hold.
#include <gtest/gtest.h>

#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTimeEdit>
#include <QTimer>

#include "config/text_codec.h"
#include "support/qt_application.h"
#include "ui/qt/qt_text.h"
#include "ui/qt/recognition_window.h"
#include "ui/qt/signal_window.h"
#include "ui/qt/signals_reports_window.h"

using namespace vx;
using namespace vx::dialogs;
using vx::ui::literal;

namespace {

std::string cp(const char* utf8) { return config::utf8ToCp1251(utf8); }

config::DateTime fixedNow()
{
    config::DateTime now{};
    now.year = 2025;
    now.month = 6;
    now.day = 14;
    now.hour = 10;
    return now;
}

} // namespace

TEST(SignalWindows, SignalWindowBindsPolicyTemplateBodyAndLimits)
{
    test::qtApplication();
    config::ReceiverSample gate;
    gate.name = "Gate";
    gate.type = 1;
    gate.URL = "http://127.0.0.1/open";
    gate.body = "{\"a\":1}";
    gate.image = true;
    std::vector<config::ReceiverSample> samples{config::ReceiverSample{}, gate};
    config::WhiteListTable lists;
    for (const char* name : {"Empty", "Staff"}) {
        lists.lists.emplace_back();
        lists.lists.back().name = name;
    }
    config::SignalConfig working;
    working.numSignal = 2;
    ScriptedMessages messages;
    int managerRuns = 0;
    SignalForm form(working, samples, lists, messages, [&] { ++managerRuns; });
    ui::SignalWindow window(form, nullptr);
    window.start();

    EXPECT_EQ(window.windowTitle(), literal("Настройка сигнала 2"));
    EXPECT_TRUE(window.policy[0]->isChecked());
    EXPECT_FALSE(window.whiteList->isEnabled());
    EXPECT_FALSE(window.timeOutClose->isEnabled());
    EXPECT_FALSE(window.body->isEnabled());
    EXPECT_EQ(window.changeWhiteLists->text(), literal("Изменить"));
    EXPECT_EQ(window.applyReceiver->text(), literal("Применить приемник"));
    EXPECT_EQ(window.url->maxLength(), 1023);

    window.policy[1]->click();
    EXPECT_TRUE(window.whiteList->isEnabled());
    window.whiteList->activated(1);
    window.changeWhiteLists->click();
    EXPECT_EQ(managerRuns, 1);
    EXPECT_EQ(window.whiteList->currentIndex(), 0);   // the stored name again, "Empty"
    window.whiteList->activated(1);

    window.receivers->activated(1);
    window.applyReceiver->click();
    EXPECT_EQ(window.requestType->currentText(), "POST");
    EXPECT_EQ(window.url->text(), "http://127.0.0.1/open");
    EXPECT_TRUE(window.body->isEnabled());
    EXPECT_TRUE(window.image->isChecked());

    // The body takes several lines and no more than its limit.
    window.body->setPlainText(QString("{\"x\":\"a\\b\"}\nline 2"));
    EXPECT_EQ(form.body.text, "{\"x\":\"a\\b\"}\nline 2");
    window.body->setPlainText(QString(1100, 'b'));
    EXPECT_EQ(window.body->toPlainText().size(), 1023);
    window.body->setPlainText(QString("{\"x\":\"a\\b\"}\nline 2"));

    window.timeOutSend->setText("");
    window.ok->click();
    EXPECT_TRUE(window.isVisible());
    ASSERT_EQ(messages.shown.size(), 1u);
    EXPECT_EQ(messages.shown[0].text, cp("Неправильно задано время ожидания соединения для сигнала [1 - 10000]!"));
    window.timeOutSend->setText("50000");
    window.ok->click();
    EXPECT_EQ(window.result(), QDialog::Accepted);
    EXPECT_EQ(working.nameWhiteList, "Staff");
    EXPECT_FALSE(working.typeSendAll);
    EXPECT_EQ(working.signal.type, 1);
    EXPECT_EQ(working.signal.body, "{\"x\":\"a\\b\"}\nline 2");
    EXPECT_EQ(working.timeOutSend, 50000);
}

TEST(SignalWindows, RecognitionWindowFollowsTheMethodAndStores)
{
    test::qtApplication();
    config::CameraRecognition recognition;
    config::CameraCommon common;
    common.videoName = cp("Въезд");
    ScriptedMessages messages;
    RecognitionForm form(recognition, common, messages);
    ui::RecognitionWindow window(form, nullptr);
    window.start();

    EXPECT_EQ(window.windowTitle(), literal("Настройка распознавания видеопотока Въезд"));
    EXPECT_EQ(window.method->currentText(), literal("Два кадра подряд"));
    EXPECT_FALSE(window.trajTypeSpeed->isEnabled());
    EXPECT_EQ(window.lineDist->text(), "0.05");
    window.method->activated(4);
    EXPECT_TRUE(window.lineAlfa->isEnabled());
    EXPECT_FALSE(window.delaySendSame->isEnabled());
    EXPECT_TRUE(window.tLimitTime->isEnabled());
    window.trajTypeSpeed->activated(1);
    EXPECT_FALSE(window.tLimitTime->isEnabled());
    EXPECT_TRUE(window.tLimitFrames->isEnabled());
    window.useZone->click();
    EXPECT_TRUE(window.width->isEnabled());
    window.x->setText("0.5");
    window.width->setText("0.6");
    window.ok->click();
    EXPECT_TRUE(window.isVisible());
    ASSERT_EQ(messages.shown.size(), 1u);
    EXPECT_EQ(messages.shown[0].text, cp("Зона распознавания лежит вне границ кадра!"));
    window.width->setText("0.5");
    window.lineAlfa->setText("-30");
    window.drawOptionsButtons->click();
    window.ok->click();
    EXPECT_EQ(window.result(), QDialog::Accepted);
    EXPECT_EQ(recognition.method, 4);
    EXPECT_EQ(recognition.trajTypeSpeed, 1);
    EXPECT_TRUE(recognition.useZone);
    EXPECT_FLOAT_EQ(recognition.width, 0.5f);
    EXPECT_FLOAT_EQ(recognition.lineAlfa, -30.0f);
    EXPECT_TRUE(common.drawOptionsButtons);
}

TEST(SignalWindows, SignalsReportsWindowEditsASignalAndGenerationCloses)
{
    test::qtApplication();
    config::CameraControl control;
    control.Control[1].name = "door";
    bool reportRequested = false;
    ScriptedMessages messages;
    SignalsReportsForm form(
        control, cp("Въезд"), reportRequested, messages,
        [](config::SignalConfig& working) {
            working.name = "gate";
            return true;
        },
        fixedNow);
    ui::SignalsReportsWindow window(form, nullptr);
    window.start();

    EXPECT_EQ(window.windowTitle(), literal("Настройка сигналов видеопотока Въезд"));
    EXPECT_EQ(window.signalOn[3]->text(), literal("Включить отправку сигнала 4"));
    EXPECT_EQ(window.signalName[1]->text(), "door");
    EXPECT_TRUE(window.signalName[1]->isReadOnly());
    EXPECT_EQ(window.editSignal[1]->text(), literal("Редактировать"));
    EXPECT_FALSE(window.timeDailyReport->isEnabled());
    EXPECT_TRUE(window.notDelMoveGroupQualThresh->isEnabled());
    EXPECT_EQ(window.startDate->date(), QDate(2025, 6, 14));
    EXPECT_EQ(window.buttonOpenSignal->itemText(3), literal("Сигнал 4"));

    window.editSignal[1]->click();
    EXPECT_EQ(window.signalName[1]->text(), "gate");
    EXPECT_EQ(control.Control[1].name, "gate");

    window.dailyReport->click();
    EXPECT_TRUE(window.timeDailyReport->isEnabled());
    window.timeDailyReport->setTime(QTime(23, 30, 0));
    window.startDate->setDate(QDate(2025, 6, 1));
    window.endTime->setTime(QTime(12, 0, 0));
    window.buttonClose->click();
    window.buttonCloseSignal->activated(3);
    window.timeMinStop->setText("0");
    window.generateReport->click();
    EXPECT_TRUE(window.isVisible());
    ASSERT_EQ(messages.shown.size(), 1u);
    EXPECT_FALSE(reportRequested);
    window.timeMinStop->setText("45");
    window.generateReport->click();
    EXPECT_EQ(window.result(), QDialog::Accepted);
    EXPECT_FALSE(window.isVisible());
    EXPECT_TRUE(reportRequested);
    EXPECT_EQ(control.timeMinStop, 45);
    EXPECT_TRUE(control.dailyReport);
    EXPECT_EQ(config::formatDateTime(control.timeDailyReport), "2025-06-14 23:30:00");
    EXPECT_EQ(config::formatDateTime(control.timeReportStart), "2025-06-01 10:00:00");
    EXPECT_EQ(config::formatDateTime(control.timeReportEnd), "2025-06-14 12:00:00");
    EXPECT_TRUE(control.buttonClose);
    EXPECT_EQ(control.buttonCloseSignal, 3);
}
