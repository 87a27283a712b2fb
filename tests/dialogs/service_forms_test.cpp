// The recognition and control service dialogs driven without a window:
// read back, the order of their tests, the restart question.
#include <gtest/gtest.h>

#include "config/text_codec.h"
#include "dialogs/control_service_form.h"
#include "dialogs/recognition_service_form.h"

using namespace vx;
using namespace vx::dialogs;

namespace {

std::string cp(const char* utf8) { return config::utf8ToCp1251(utf8); }

const char* const portText = "Неправильно задан порт [1000 - 65535]!";
const char* const confidenceText = "Настройки достоверности во всех случаях должны быть в интервале (0,1)!";
const char* const recognitionQuestion = "После этого действия система распознавания будет перезагружена! Продолжить?";

class RecognitionForm : public ::testing::Test {
protected:
    RecognitionForm() { form.fill(); }
    std::string lastText() const { return messages.shown.empty() ? std::string() : messages.shown.back().text; }

    config::RecognitionSrvConfig record;
    ScriptedMessages messages;
    RecognitionServiceForm form{record, messages};
};

} // namespace

TEST_F(RecognitionForm, FillShowsTheRecordAndLocksTheCount)
{
    EXPECT_EQ(form.port.text, "1234");
    EXPECT_EQ(form.models.selected, 1);
    EXPECT_EQ(form.confThresh.text, "0.25");
    EXPECT_FALSE(form.gpuObjects.enabled);
    EXPECT_TRUE(form.turn.checked);
}

TEST_F(RecognitionForm, ConfidenceIsTestedFirstAndTakesZeroAndOne)
{
    form.confThresh.type("abc");
    form.port.type("5");
    EXPECT_FALSE(form.accept());
    EXPECT_EQ(lastText(), cp(confidenceText));
    EXPECT_EQ(messages.shown.size(), 1u);

    form.confThresh.type("0");
    form.confPerson.type("1");
    form.confVehicle.type("1.0001");
    EXPECT_FALSE(form.accept());
    EXPECT_EQ(lastText(), cp(confidenceText));
    form.confVehicle.type("1");
    form.port.type("1234");
    messages.answer(true);
    EXPECT_TRUE(form.accept());
    EXPECT_FLOAT_EQ(record.detectConfThresh, 0.0f);
}

TEST_F(RecognitionForm, TheLastFailingIntegerSpeaks)
{
    form.port.type("999");
    form.minWidth.type("19");
    EXPECT_FALSE(form.accept());
    EXPECT_EQ(lastText(), cp("Неправильно задано значение минимальной ширины номера в пикселях [20 - 2000]!"));

    // An empty count fails while locked, and beats everything else.
    form.gpuObjects.text.clear();
    EXPECT_FALSE(form.accept());
    EXPECT_EQ(lastText(), cp("Количество объектов для распознавания может быть только в диапазоне от 1 до 8!"));

    form.port.type("");
    form.minWidth.type("60");
    form.gpuObjects.text = "1";
    EXPECT_FALSE(form.accept());
    EXPECT_EQ(lastText(), cp(portText));

    // Minimum above maximum passes.
    form.port.type("65535");
    form.minSymbols.type("20");
    form.maxSymbols.type("1");
    messages.answer(true);
    EXPECT_TRUE(form.accept());
    EXPECT_EQ(record.minSymbolsPlate, 20);
    EXPECT_EQ(record.maxSymbolsPlate, 1);
}

TEST_F(RecognitionForm, NoToTheRestartKeepsEverything)
{
    form.port.type("4321");
    messages.answer(false);
    EXPECT_FALSE(form.accept());
    const Message& asked = messages.shown.back();
    EXPECT_EQ(asked.title, cp("Осторожно!"));
    EXPECT_EQ(asked.text, cp(recognitionQuestion));
    EXPECT_EQ(asked.buttons, MessageButtons::yesNo);
    EXPECT_EQ(record.port, 1234);
    EXPECT_EQ(form.port.text, "4321");
}

TEST_F(RecognitionForm, TheBlockButtonUnlocksForThisOpeningOnly)
{
    messages.answer(false);
    form.unlock.press();
    EXPECT_FALSE(form.gpuObjects.enabled);
    form.gpuObjects.type("4");
    EXPECT_EQ(form.gpuObjects.text, "1");   // locked: typing does nothing
    messages.answer(true);
    form.unlock.press();
    EXPECT_EQ(messages.shown.back().text.substr(0, 12), cp("ОСТОРОЖНО! \n"));
    EXPECT_TRUE(form.gpuObjects.enabled);
    form.gpuObjects.type("4");
    // Cancel: nothing stored, and the next opening locks again.
    form.fill();
    EXPECT_FALSE(form.gpuObjects.enabled);
    EXPECT_EQ(record.gpuObjects, 1);
}

TEST(ControlForm, ModeZeroIsShownButStoredAsTwo)
{
    config::ControlSrvConfig record;
    record.modeDB = 0;
    ScriptedMessages messages;
    ControlServiceForm form(record, messages);
    form.fill();
    EXPECT_EQ(form.modeDB.chosen, 0);
    messages.answer(true);
    EXPECT_TRUE(form.accept());
    EXPECT_EQ(record.modeDB, 2);
    EXPECT_EQ(messages.shown.back().text, cp("После этого действия система управления будет перезагружена! Продолжить?"));

    record.modeDB = 7;
    form.fill();
    EXPECT_EQ(form.modeDB.chosen, -1);
    form.modeDB.choose(1);
    EXPECT_EQ(form.readBack().modeDB, 1);
}

TEST(ControlForm, PortLimitsAndNoKeepTheRecord)
{
    config::ControlSrvConfig record;
    ScriptedMessages messages;
    ControlServiceForm form(record, messages);
    form.fill();
    for (const char* bad : {"", "999", "65536"}) {
        form.port.type(bad);
        EXPECT_FALSE(form.accept()) << bad;
        EXPECT_EQ(messages.shown.back().text, cp(portText));
        EXPECT_EQ(messages.shown.back().icon, MessageIcon::error);
    }
    form.port.type("1000");
    form.httpLogger.click();
    messages.answer(false);
    EXPECT_FALSE(form.accept());
    EXPECT_EQ(record.port, 1235);
    EXPECT_FALSE(record.httpLogger);
    form.port.type("65535");
    messages.answer(true);
    EXPECT_TRUE(form.accept());
    EXPECT_EQ(record.port, 65535);
    EXPECT_TRUE(record.httpLogger);
}
