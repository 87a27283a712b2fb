// The signals and reports dialog driven without a window: the period test
// and its order, the failures, editing a signal and OK ("Генерация" with a
// good period runs in the window tests).
#include <gtest/gtest.h>

#include "dialogs/signals_reports_form.h"
#include "form_test.h"

using namespace vx;
using namespace vx::dialogs;
using vx::dialogs::test::at;
using vx::dialogs::test::cp;
using vx::dialogs::test::lastText;

namespace {

class SignalsReportsTest : public ::testing::Test {
protected:
    SignalsReportsTest()
    {
        for (std::size_t slot = 0; slot < 4; ++slot)
            control.Control[slot].name = "s" + std::to_string(slot + 1);
        control.Control[2].on = true;
    }
    SignalsReportsForm& form()
    {
        form_ = std::make_unique<SignalsReportsForm>(control, cp("Въезд"), reportRequested, messages,
                                                     [this](config::SignalConfig& working) {
                                                         edited.push_back(working);
                                                         return editor ? editor(working) : false;
                                                     },
                                                     test::fixedNow);
        form_->closeWithOk = [this] { ++closed; };
        form_->fill();
        return *form_;
    }
    void period(SignalsReportsForm& f, const config::DateTime& start, const config::DateTime& end)
    {
        f.startDate.pick(start);
        f.startTime.pick(start);
        f.endDate.pick(end);
        f.endTime.pick(end);
    }

    config::CameraControl control;
    bool reportRequested = false;
    ScriptedMessages messages;
    std::vector<config::SignalConfig> edited;
    std::function<bool(config::SignalConfig&)> editor;
    int closed = 0;

private:
    std::unique_ptr<SignalsReportsForm> form_;
};

} // namespace

TEST(ReportSettingsCheck, CodesInOrderWithLaterOnesWinning)
{
    struct Case {
        config::DateTime start, end;
        std::int32_t between, stop;   // a fresh record's: 120 and 30
        float confidence;             // a fresh record's: 0.7
        int code;
    };
    const Case cases[] = {
        {at(2025, 3, 1), at(2025, 3, 2), 120, 30, 0.7f, 0},
        {at(2025, 5, 1), at(2025, 6, 10), 120, 30, 0.7f, 0},   // exactly 40 days
        {at(2025, 5, 1), at(2025, 6, 10, 0, 0, 1), 0, 30, 0.7f, 3},   // 41 days win over the minimum
        {at(2025, 5, 1), at(2025, 5, 2), 0, 30, 0.7f, 1},
        {at(2025, 5, 1), at(2025, 5, 2), 0, 36001, 0.7f, 2},
        {at(2025, 3, 2), at(2025, 3, 1, 23, 59, 59), 120, 30, 0.7f, 5},
        {at(2025, 3, 2), at(2025, 3, 1, 23, 59, 59), 120, 30, 0.29f, 6},   // the confidence wins
        {at(2025, 3, 2), at(2025, 3, 2), 120, 30, 1.01f, 6},
        // The month test looks at month numbers alone, and only when no code is set.
        {at(2024, 11, 30), at(2025, 1, 1), 120, 30, 0.7f, 4},   // 32 days over three months
        {at(2024, 12, 20), at(2025, 1, 1), 120, 30, 0.7f, 0},   // December to January
        {at(2025, 1, 31), at(2025, 3, 1), 120, 30, 0.7f, 4},
        {at(2024, 1, 1), at(2025, 1, 1), 120, 30, 0.7f, 3},     // the same month: only the 40 days
        {at(2024, 11, 30), at(2025, 1, 1), 120, 0, 0.7f, 2},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(dateTimeText(c.start) + " - " + dateTimeText(c.end));
        config::CameraControl control;
        control.timeReportStart = c.start;
        control.timeReportEnd = c.end;
        control.timeMinBetweenSimilarCar = c.between;
        control.timeMinStop = c.stop;
        control.notDelMoveGroupQualThresh = c.confidence;
        EXPECT_EQ(checkReportSettings(control), c.code);
    }
    EXPECT_EQ(reportSettingsMessage(3),
              cp("Период для генерации равен или превышает 40 дней! Установите меньший период!"));
    EXPECT_EQ(reportSettingsMessage(4),
              cp("Период для генерации лежит больше, чем в двух месяцах! Установите меньший период!"));
}

TEST_F(SignalsReportsTest, FailuresShowOneMessageAndStoreNothingAndABadPeriodBlocksGeneration)
{
    SignalsReportsForm& f = form();
    f.timeMinBetweenSimilarCar.type("");
    EXPECT_FALSE(f.accept());
    f.timeMinStop.type("0");
    EXPECT_FALSE(f.accept());
    f.notDelMoveGroup.click();           // clear: the value is tested all the same
    f.notDelMoveGroupQualThresh.text = "";
    EXPECT_FALSE(f.generate());
    EXPECT_EQ(closed, 0);
    ASSERT_EQ(messages.shown.size(), 3u);
    EXPECT_EQ(messages.shown[0].text,
              cp("Минимальное время между повторами автомобиля должно быть в интервале от 1 до 1500 минут!"));
    EXPECT_EQ(messages.shown[1].text,
              cp("Минимальное время стояния автомобиля должно быть в интервале от 1 до 36000 секунд!"));
    EXPECT_EQ(messages.shown[2].text,
              cp("Достоверность движущегося номера должна быть в диапазоне от 0.3 до 1.0!"));
    EXPECT_EQ(messages.shown[2].title, messageTitle());
    EXPECT_FALSE(reportRequested);
    EXPECT_EQ(control.timeMinStop, 30);

    // A start after the end: the message, no report, still open.
    SignalsReportsForm& g = form();
    period(g, at(2025, 6, 2), at(2025, 6, 1));
    g.generateReport.press();
    EXPECT_EQ(closed, 0);
    EXPECT_FALSE(reportRequested);
    EXPECT_EQ(lastText(messages), cp("Дата начала больше дата окончания периода"));
}

// The pickers and the report fields are carried through the windows in the
// window tests.
TEST_F(SignalsReportsTest, EditingASignalGoesBackAtOnceWithTheStoredOnFlagAndOkReadsTheFormBack)
{
    control.ControlPortServer = 4444;
    SignalsReportsForm& f = form();
    EXPECT_EQ(f.notDelMoveGroupQualThresh.text, "0.7");
    f.signalOn[2].click();   // cleared on the form; the editor still opens
    editor = [](config::SignalConfig& working) {
        working.name = "renamed";
        working.on = false;
        working.timeOutSend = 900;
        return true;
    };
    f.editSignal[2].press();
    ASSERT_EQ(edited.size(), 1u);
    EXPECT_EQ(edited[0].numSignal, 3);
    EXPECT_EQ(f.signalName[2].text, "renamed");
    EXPECT_TRUE(control.Control[2].on);
    EXPECT_EQ(control.Control[2].timeOutSend, 900);

    // Cancel in the signal dialog changes nothing.
    editor = [](config::SignalConfig& working) {
        working.name = "dropped";
        return false;
    };
    f.editSignal[0].press();
    EXPECT_EQ(control.Control[0].name, "s1");

    // OK here takes the on flags from the checks; the limits pass.
    f.timeMinBetweenSimilarCar.type("1500");
    f.timeMinStop.type("36000");
    f.notDelMoveGroupQualThresh.type("1");
    ASSERT_TRUE(f.accept());
    EXPECT_FALSE(reportRequested);
    EXPECT_FALSE(control.Control[2].on);
    EXPECT_EQ(control.ControlPortServer, 4444);
    EXPECT_EQ(control.timeMinBetweenSimilarCar, 1500);
    EXPECT_EQ(control.timeMinStop, 36000);
    EXPECT_FLOAT_EQ(control.notDelMoveGroupQualThresh, 1.0f);
}
