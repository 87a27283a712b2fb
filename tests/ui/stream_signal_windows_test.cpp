// The stream, signal, recognition, and signals and reports windows on the
// offscreen platform: the widgets carry what the operator does to the forms,
// and OK stores what the forms hold. The forms' own rules are the form tests'.
#include <gtest/gtest.h>

#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTimeEdit>

#include "../dialogs/form_test.h"
#include "support/qt_application.h"
#include "ui/qt/qt_text.h"
#include "ui/qt/recognition_window.h"
#include "ui/qt/signal_window.h"
#include "ui/qt/signals_reports_window.h"
#include "ui/qt/stream_window.h"

using namespace vx;
using namespace vx::dialogs;
using namespace vx::dialogs::test;
using vx::ui::literal;

TEST(StreamWindow, WidgetsCarryTheEditsAndGotovoStoresTheRecord)
{
    vx::test::qtApplication();
    config::CameraCommon record;
    record.videoPath = "rtsp://old";
    record.videoChunk = 60;
    ScriptedMessages messages;
    StreamForm form(record, true, messages);
    form.findLink = [] { return std::optional<std::string>("rtsp://found"); };
    ui::StreamWindow window(form, nullptr);
    window.start();
    window.reconnect->click();
    window.findCamera->click();
    EXPECT_EQ(window.videoPath->text(), "rtsp://found");
    window.videoName->setText(literal("Въезд"));
    window.fps->setText("12.5");
    window.ok->click();

    EXPECT_TRUE(messages.shown.empty());
    EXPECT_EQ(window.result(), QDialog::Accepted);
    EXPECT_EQ(record.videoPath, "rtsp://found");
    EXPECT_EQ(record.videoName, cp("Въезд"));
    EXPECT_FLOAT_EQ(record.fps, 12.5f);
    EXPECT_TRUE(record.reconnect);
}

TEST(SignalWindows, SignalWindowBindsPolicyTemplateBodyAndLimits)
{
    vx::test::qtApplication();
    config::ReceiverSample gate;
    gate.type = 1;
    gate.URL = "http://127.0.0.1/open";
    std::vector<config::ReceiverSample> samples{config::ReceiverSample{}, gate};
    config::WhiteListTable lists;
    for (const char* name : {"Empty", "Staff"}) {
        lists.lists.emplace_back();
        lists.lists.back().name = name;
    }
    config::SignalConfig working;
    working.numSignal = 2;
    ScriptedMessages messages;
    SignalForm form(working, samples, lists, messages, [] {});
    ui::SignalWindow window(form, nullptr);
    window.start();

    window.policy[1]->click();
    window.whiteList->activated(1);
    window.receivers->activated(1);
    window.applyReceiver->click();
    // The body takes several lines and no more than its limit.
    window.body->setPlainText(QString(1100, 'b'));
    EXPECT_EQ(window.body->toPlainText().size(), 1023);
    window.body->setPlainText(QString("{\"x\":\"a\\b\"}\nline 2"));

    window.ok->click();
    EXPECT_EQ(window.result(), QDialog::Accepted);
    EXPECT_EQ(working.nameWhiteList, "Staff");
    EXPECT_EQ(working.signal.type, 1);
    EXPECT_EQ(working.signal.body, "{\"x\":\"a\\b\"}\nline 2");
}

TEST(SignalWindows, RecognitionWindowFollowsTheMethodAndStores)
{
    vx::test::qtApplication();
    config::CameraRecognition recognition;
    config::CameraCommon common;
    common.videoName = cp("Въезд");
    ScriptedMessages messages;
    RecognitionForm form(recognition, common, messages);
    ui::RecognitionWindow window(form, nullptr);
    window.start();
    EXPECT_EQ(window.windowTitle(), literal("Настройка распознавания видеопотока Въезд"));
    window.method->activated(4);
    window.useZone->click();
    window.width->setText("0.5");
    window.drawOptionsButtons->click();
    window.ok->click();
    EXPECT_EQ(recognition.method, 4);
    EXPECT_FLOAT_EQ(recognition.width, 0.5f);
    EXPECT_TRUE(common.drawOptionsButtons);
}

TEST(SignalWindows, SignalsReportsWindowEditsASignalAndGenerationCloses)
{
    vx::test::qtApplication();
    config::CameraControl control;
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
    EXPECT_EQ(window.startDate->date(), QDate(2025, 6, 14));
    window.editSignal[1]->click();
    EXPECT_EQ(window.signalName[1]->text(), "gate");

    window.dailyReport->click();
    window.timeDailyReport->setTime(QTime(23, 30, 0));
    window.startDate->setDate(QDate(2025, 6, 1));
    window.buttonCloseSignal->activated(3);
    window.generateReport->click();
    EXPECT_EQ(window.result(), QDialog::Accepted);
    EXPECT_TRUE(reportRequested);
    EXPECT_EQ(control.Control[1].name, "gate");
    EXPECT_TRUE(control.dailyReport);
    EXPECT_EQ(config::formatDateTime(control.timeDailyReport), "2025-06-14 23:30:00");
    EXPECT_EQ(config::formatDateTime(control.timeReportStart), "2025-06-01 10:20:30");
    EXPECT_EQ(control.buttonCloseSignal, 3);
}
