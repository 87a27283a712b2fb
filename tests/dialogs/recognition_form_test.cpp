// The recognition dialog driven without a window: stored values, the checks
// with their limits and order, and what accept stores.
#include <gtest/gtest.h>

#include "dialogs/recognition_form.h"
#include "form_test.h"

using namespace vx;
using namespace vx::dialogs;
using vx::dialogs::test::cp;

namespace {

const char* const delayText = "Неправильно задана задержка при посылке такого же номера [0 - 100000]!";
const char* const ageText = "Неправильно заданы время устаревания или кадры до устаревания [1-1000]!";
const char* const areaText = "Минимальная или максимальная площадь номера вне интерваоа (0 - 1) или "
                             "максимальная площадь меньше минимальной!";
const char* const zoneText = "Зона распознавания лежит вне границ кадра!";
const char* const linesText = "Настройки линий пересечения лежат вне заданных пределах!";
const char* const confText = "Минимальная достоверность распознавания может быть только в пределах 0.1 - 0.9!";

class RecognitionFormTest : public ::testing::Test {
protected:
    RecognitionFormTest() { common.videoName = cp("Въезд"); }
    RecognitionForm& form()
    {
        form_ = std::make_unique<RecognitionForm>(recognition, common, messages);
        form_->fill();
        return *form_;
    }
    std::string acceptMessage(RecognitionForm& f) { return test::acceptMessage(f, messages); }

    config::CameraRecognition recognition;
    config::CameraCommon common;
    ScriptedMessages messages;

private:
    std::unique_ptr<RecognitionForm> form_;
};

} // namespace

TEST_F(RecognitionFormTest, StoredValuesShowWithFiveDigitsOrOutsideTheirItems)
{
    recognition.minConf = 0.123456f;
    recognition.trajTypeSpeed = 5;   // shows "По кадрам"
    recognition.method = 9;          // no item: read back as a fresh record's 1
    RecognitionForm& f = form();
    EXPECT_EQ(f.minConf.text, "0.12346");
    EXPECT_EQ(f.trajTypeSpeed.selected, 1);
    EXPECT_EQ(f.method.selected, -1);
    ASSERT_EQ(acceptMessage(f), "");
    EXPECT_EQ(recognition.method, 1);
    EXPECT_EQ(recognition.trajTypeSpeed, 1);
}

TEST_F(RecognitionFormTest, EachCheckAtAndBeyondItsLimitsAndTheLastInOrderSpeaks)
{
    struct Case {
        RealField RecognitionForm::*real;
        IntegerField RecognitionForm::*integer;
        const char* text;
        const char* message;   // nullptr: accepted
    };
    using F = RecognitionForm;
    const Case cases[] = {
        {nullptr, &F::delaySendSame, "100001", delayText},
        {nullptr, &F::tLimitFrames, "1001", ageText},   // checked though the field is off
        {&F::minConf, nullptr, "0.1", nullptr},
        {&F::minConf, nullptr, "0.9", nullptr},
        {&F::minConf, nullptr, "0.09", confText},
        {&F::minConf, nullptr, "0.91", confText},
        {&F::minSquare, nullptr, "", nullptr},   // -1.0: the least area isn't tested below 0
        {&F::maxSquare, nullptr, "", areaText},
        {&F::width, nullptr, "1.01", zoneText},   // checked with the zone off
        {&F::width, nullptr, "-3", nullptr},      // a negative size isn't tested by itself
        {&F::lineAlfa, nullptr, "-45", nullptr},
        {&F::lineAlfa, nullptr, "", linesText},   // -100
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.text);
        RecognitionForm& f = form();
        if (c.real)
            (f.*c.real).text = c.text;
        else
            (f.*c.integer).text = c.text;
        EXPECT_EQ(acceptMessage(f), c.message ? cp(c.message) : std::string());
    }
    // The zone's corner and size are summed.
    RecognitionForm& f = form();
    f.x.text = "0.5";
    f.width.text = "0.5";
    EXPECT_EQ(acceptMessage(f), "");
    f.width.text = "0.6";
    EXPECT_EQ(acceptMessage(f), cp(zoneText));

    // Several wrong fields: the last test in order speaks.
    f.width.text = "0.5";
    f.delaySendSame.text = "";
    f.tLimitTime.text = "0";
    EXPECT_EQ(acceptMessage(f), cp(ageText));
    f.maxSquare.text = "2";
    EXPECT_EQ(acceptMessage(f), cp(areaText));
    f.x.text = "2";
    EXPECT_EQ(acceptMessage(f), cp(zoneText));
    f.linesY.text = "2";
    EXPECT_EQ(acceptMessage(f), cp(linesText));
    f.minConf.text = "2";
    EXPECT_EQ(acceptMessage(f), cp(confText));
    EXPECT_FLOAT_EQ(recognition.x, 0.5f);   // nothing stored since the zone passed
}

TEST_F(RecognitionFormTest, AcceptStoresOverAFreshRecord)
{
    recognition.showTime = 250;
    recognition.timeoutServerRecog = 0.4f;
    recognition.portServer = 4321;
    recognition.deleteBorderNumbers = false;
    RecognitionForm& f = form();
    f.method.select(4);
    f.trajTypeSpeed.select(1);
    f.tLimitFrames.type("77");
    f.minConf.type("0.35");
    ASSERT_EQ(acceptMessage(f), "");
    EXPECT_EQ(recognition.method, 4);
    EXPECT_EQ(recognition.tLimitFrames, 77);
    EXPECT_EQ(recognition.trajTypeSpeed, 1);
    EXPECT_FLOAT_EQ(recognition.minConf, 0.35f);
    EXPECT_FALSE(recognition.deleteBorderNumbers);
    // Not on the form: back at a fresh record's values.
    EXPECT_EQ(recognition.showTime, 1000);
    EXPECT_FLOAT_EQ(recognition.timeoutServerRecog, 4.0f);
    EXPECT_EQ(recognition.portServer, 1234);
    EXPECT_EQ(common.videoName, cp("Въезд"));
}
