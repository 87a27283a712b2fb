// The stream dialog driven without a window: the trimmed link, the nine
// tests in their order, the decoders, and what accept keeps.
#include <gtest/gtest.h>

#include <memory>

#include "dialogs/stream_form.h"
#include "form_test.h"

using namespace vx;
using namespace vx::dialogs;
using vx::dialogs::test::cp;

namespace {

const char* const linkText = "Не задан или задан неправильно видеопоток - нужно больше 3-х символов!";
const char* const fpsText = "Неправильно заданно значение FPS - можно в диапазоне от 0 до 1000!";
const char* const secondsText =
    "Неправильное количество секунд до переподключения - можно в диапазоне от 1 и до 1000!";
const char* const widthText = "Неправильно заданно значение ширины [0 - 20000]!";
const char* const heightText = "Неправильно заданно значение высоты [0 - 20000]!";
const char* const attemptsText = "Неправильно заданно количество попыток - можно в диапазоне от 0 до 1000!";
const char* const chunkText = "Размер чанка может быть в пределах [1,500]!";
const char* const widthWriteText = "Неправильно заданно значение ширины записи [0 - 20000]!";
const char* const heightWriteText = "Неправильно заданно значение высоты записи [0 - 20000]!";

class StreamFormTest : public ::testing::Test {
protected:
    StreamFormTest()
    {
        record.videoPath = "rtsp://cam";
        record.videoName = cp("Въезд");
        record.videoChunk = 60;
    }
    StreamForm& form(bool isNew = false)
    {
        form_ = std::make_unique<StreamForm>(record, isNew, messages);
        form_->fill();
        return *form_;
    }
    std::string acceptMessage() { return test::acceptMessage(*form_, messages); }

    config::CameraCommon record;
    ScriptedMessages messages;

private:
    std::unique_ptr<StreamForm> form_;
};

} // namespace

TEST_F(StreamFormTest, EachTestAtAndBeyondItsLimitsAndTheLastFailingOneSpeaks)
{
    StreamForm& f = form();
    // Disabled fields are tested too: the seconds of a clear reconnect box,
    // the recording fields of a clear recording box.
    ASSERT_FALSE(f.secondsToReconnect.enabled);
    ASSERT_FALSE(f.videoChunk.enabled);
    struct Case {
        std::string* text;
        const char* value;
        const char* message;
    };
    const Case cases[] = {
        {&f.videoPath.text, "ab", linkText},
        {&f.videoPath.text, " \t\r\n\f\v ", linkText},
        {&f.fps.text, "", fpsText},
        {&f.fps.text, "1000.5", fpsText},
        {&f.secondsToReconnect.text, "", secondsText},
        {&f.width.text, "20001", widthText},
        {&f.height.text, "20001", heightText},
        {&f.attempts.text, "1001", attemptsText},
        {&f.videoChunk.text, "0", chunkText},
        {&f.videoChunk.text, "501", chunkText},
        {&f.widthWrite.text, "20001", widthWriteText},
        {&f.heightWrite.text, "", heightWriteText},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.value);
        const std::string good = *c.text;
        *c.text = c.value;
        EXPECT_EQ(acceptMessage(), cp(c.message));
        *c.text = good;
    }
    // All at once: the last gives the message.
    for (const Case& c : cases)
        *c.text = c.value;
    EXPECT_EQ(acceptMessage(), cp(heightWriteText));
    f.heightWrite.text = "0";
    EXPECT_EQ(acceptMessage(), cp(widthWriteText));
    // Three characters after trimming pass.
    StreamForm& g = form();
    g.videoPath.type("\t abc \v\n");
    EXPECT_EQ(acceptMessage(), "");
    EXPECT_EQ(record.videoPath, "abc");
}

TEST_F(StreamFormTest, TheNameRefusesQuoteAndBackslashAndTheLinkTheQuote)
{
    const std::string nameText = cp("Название потока не может содержать символы \" и \\!");
    struct Case {
        const char* link;
        const char* name;
        std::string message;
    };
    const Case cases[] = {
        {"rtsp://cam", "Gate\\A", nameText},
        {"C:\\videos\\gate.mp4", "Gate", ""},   // written with its backslashes doubled
        {"rtsp://cam/\"a\"", "Gate", cp("Ссылка на видеопоток не может содержать символ \"!")},
        {"rtsp://cam/\"a\"", "Gate \"A\"", nameText},   // the name's test comes last
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.link) + " / " + c.name);
        StreamForm& f = form();
        f.videoPath.type(c.link);
        f.videoName.type(c.name);
        EXPECT_EQ(acceptMessage(), c.message);
    }
}

// A stored pair shows both until a click on one clears the other, whichever
// state the clicked box takes.
TEST_F(StreamFormTest, ADecoderClickClearsTheOther)
{
    record.decodeNvidia = true;
    record.decodeDirectX = true;
    StreamForm& f = form();
    EXPECT_TRUE(f.decodeDirectX.checked);
    f.decodeNvidia.click();
    EXPECT_FALSE(f.decodeNvidia.checked);
    EXPECT_FALSE(f.decodeDirectX.checked);
}

TEST_F(StreamFormTest, AcceptKeepsWindowIdAndAutorunAndClearsWhatIsNotOnTheForm)
{
    record.heightWindow = 14;
    record.ID = 7;
    record.autoRun = true;
    record.display = 2;
    record.drawOptionsButtons = true;
    StreamForm& f = form();
    f.videoName.type(cp(" Выезд "));
    f.width.type("640");
    EXPECT_EQ(acceptMessage(), "");
    EXPECT_EQ(record.heightWindow, 14);
    EXPECT_EQ(record.ID, 7);
    EXPECT_TRUE(record.autoRun);
    EXPECT_EQ(record.display, 0);
    EXPECT_FALSE(record.drawOptionsButtons);
    EXPECT_EQ(record.videoName, cp(" Выезд "));   // the name as typed
    EXPECT_EQ(record.width, 640);
}
