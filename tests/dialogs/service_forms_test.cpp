// The recognition and control service dialogs driven without a window:
// read back, the order of their tests, the restart question.
#include <gtest/gtest.h>

#include "dialogs/control_service_form.h"
#include "dialogs/recognition_service_form.h"
#include "form_test.h"

using namespace vx;
using namespace vx::dialogs;
using vx::dialogs::test::cp;
using vx::dialogs::test::lastText;

namespace {

const char* const portText = "Неправильно задан порт [1000 - 65535]!";
const char* const confidenceText = "Настройки достоверности во всех случаях должны быть в интервале (0,1)!";

class RecognitionForm : public ::testing::Test {
protected:
    RecognitionForm() { form.fill(); }

    config::RecognitionSrvConfig record;
    ScriptedMessages messages;
    RecognitionServiceForm form{record, messages};
};

} // namespace

TEST_F(RecognitionForm, TheTestsRunInTheirOrderAndTheRestartIsAsked)
{
    // The confidences come first and stop there; zero and one pass.
    form.confThresh.type("abc");
    form.port.type("5");
    EXPECT_FALSE(form.accept());
    EXPECT_EQ(messages.shown.size(), 1u);
    EXPECT_EQ(lastText(messages), cp(confidenceText));
    form.confThresh.type("0");
    form.confPerson.type("1");
    form.confVehicle.type("1.0001");
    EXPECT_FALSE(form.accept());
    EXPECT_EQ(lastText(messages), cp(confidenceText));
    form.confVehicle.type("1");

    // Then the integers: the last failing one speaks.
    form.port.type("999");
    form.minWidth.type("19");
    EXPECT_FALSE(form.accept());
    EXPECT_EQ(lastText(messages), cp("Неправильно задано значение минимальной ширины номера в пикселях [20 - 2000]!"));
    form.gpuObjects.text.clear();   // an empty count fails while locked, and beats everything else
    EXPECT_FALSE(form.accept());
    EXPECT_EQ(lastText(messages), cp("Количество объектов для распознавания может быть только в диапазоне от 1 до 8!"));
    form.gpuObjects.text = "1";
    form.minWidth.type("60");
    EXPECT_FALSE(form.accept());
    EXPECT_EQ(lastText(messages), cp(portText));

    // Minimum symbols above the maximum pass; No to the restart keeps the record.
    form.port.type("65535");
    form.minSymbols.type("20");
    form.maxSymbols.type("1");
    messages.answer(false);
    EXPECT_FALSE(form.accept());
    const Message& asked = messages.shown.back();
    EXPECT_EQ(asked.title, cp("Осторожно!"));
    EXPECT_EQ(asked.text, cp("После этого действия система распознавания будет перезагружена! Продолжить?"));
    EXPECT_EQ(asked.buttons, MessageButtons::yesNo);
    EXPECT_EQ(record.port, 1234);
    messages.answer(true);
    EXPECT_TRUE(form.accept());
    EXPECT_FLOAT_EQ(record.detectConfThresh, 0.0f);
    EXPECT_EQ(record.minSymbolsPlate, 20);
    EXPECT_EQ(record.maxSymbolsPlate, 1);
}

TEST_F(RecognitionForm, TheBlockButtonUnlocksForThisOpeningOnly)
{
    messages.answer(false);
    form.unlock.press();
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

TEST(ControlForm, ModeZeroIsStoredAsTwoAndThePortHasItsLimits)
{
    config::ControlSrvConfig record;
    record.modeDB = 0;
    ScriptedMessages messages;
    ControlServiceForm form(record, messages);
    form.fill();
    EXPECT_EQ(form.modeDB.chosen, 0);
    form.port.type("65536");
    EXPECT_FALSE(form.accept());
    EXPECT_EQ(lastText(messages), cp(portText));
    form.port.type("1000");
    messages.answer(true);
    EXPECT_TRUE(form.accept());
    EXPECT_EQ(record.modeDB, 2);
    EXPECT_EQ(record.port, 1000);
    EXPECT_EQ(lastText(messages), cp("После этого действия система управления будет перезагружена! Продолжить?"));
}
