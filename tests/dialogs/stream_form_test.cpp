// The stream dialog driven without a window: titles, the enable rules, the
// trimmed link, the nine tests in their order, and what accept keeps.
#include <gtest/gtest.h>

#include <memory>

#include "dialogs/stream_form.h"
#include "form_test.h"

using namespace vx;
using namespace vx::dialogs;
using vx::dialogs::test::cp;
using vx::dialogs::test::lastText;

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
    // Accepts; the one message shown, or "" when accepted.
    std::string acceptMessage()
    {
        messages.shown.clear();
        const bool accepted = form_->accept();
        EXPECT_EQ(accepted, messages.shown.empty());
        EXPECT_LE(messages.shown.size(), 1u);
        return lastText(messages);
    }

    config::CameraCommon record;
    ScriptedMessages messages;

private:
    std::unique_ptr<StreamForm> form_;
};

} // namespace

TEST_F(StreamFormTest, TitlesAndTheFrameRateShownWithFiveDigits)
{
    EXPECT_EQ(form(true).title(), cp("Добавить видеопоток"));
    record.fps = 0.25f;
    EXPECT_EQ(form().title(), cp("Редактирование видеопотока"));
    EXPECT_EQ(form().fps.text, "0.25");
    record.fps = 1000.0f;
    EXPECT_EQ(form().fps.text, "1000");
}

TEST_F(StreamFormTest, EachTestAtAndBeyondItsLimits)
{
    StreamForm& f = form();
    // Disabled fields are tested too: the seconds of a clear reconnect box,
    // the recording fields of a clear recording box.
    ASSERT_FALSE(f.secondsToReconnect.enabled);
    ASSERT_FALSE(f.videoChunk.enabled);
    struct Case {
        std::string* text;
        const char* value;
        const char* message;   // nullptr: accepted
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
        EXPECT_EQ(acceptMessage(), c.message ? cp(c.message) : std::string());
        *c.text = good;
    }
    // Three characters after trimming pass; the frame rate takes a decimal comma.
    f.videoPath.type("\t abc \v\n");
    f.fps.type("12,5");
    EXPECT_EQ(acceptMessage(), "");
    EXPECT_EQ(record.videoPath, "abc");
    EXPECT_FLOAT_EQ(record.fps, 12.5f);
}

TEST_F(StreamFormTest, TheNameRefusesQuoteAndBackslashAndTheLinkTheQuote)
{
    const std::string nameText = cp("Название потока не может содержать символы \" и \\!");
    const std::string linkQuoteText = cp("Ссылка на видеопоток не может содержать символ \"!");
    struct Case {
        const char* link;
        const char* name;
        std::string message;
    };
    const Case cases[] = {
        {"rtsp://cam", "Gate \"A\"", nameText},
        {"rtsp://cam", "Gate\\A", nameText},
        {"C:\\videos\\gate.mp4", "Gate", ""},   // written with its backslashes doubled
        {"rtsp://cam/\"a\"", "Gate", linkQuoteText},
        {"rtsp://cam/\"a\"", "Gate\\", nameText},   // the name's test comes last
        {"ab", "Gate\"", nameText},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.link) + " / " + c.name);
        StreamForm& f = form();
        f.videoPath.type(c.link);
        f.videoName.type(c.name);
        EXPECT_EQ(acceptMessage(), c.message);
    }
}

TEST_F(StreamFormTest, EveryTestRunsAndTheLastFailingOneSpeaks)
{
    StreamForm& f = form();
    f.secondsToReconnect.text = "";
    f.width.type("20001");
    EXPECT_EQ(acceptMessage(), cp(widthText));   // width comes after the seconds
    // All nine at once: the last gives the message.
    f.videoPath.type("");
    f.fps.type("-1");
    for (IntegerField* field : {&f.height, &f.attempts, &f.videoChunk, &f.widthWrite, &f.heightWrite})
        field->text = "x";
    EXPECT_EQ(acceptMessage(), cp(heightWriteText));
    f.heightWrite.text = "0";
    EXPECT_EQ(acceptMessage(), cp(widthWriteText));
}

TEST_F(StreamFormTest, EnableRules)
{
    record.writeVideo = true;
    record.writeOnlyNumObj = false;
    record.writeTransport = true;
    StreamForm& f = form();
    EXPECT_TRUE(f.videoChunk.enabled);
    EXPECT_FALSE(f.writeTransport.enabled);
    f.writeOnlyNumObj.click();
    EXPECT_TRUE(f.writePerson.enabled);
    f.writeVideo.click();
    for (bool enabled : {f.writeOnlyNumObj.enabled, f.writeTransport.enabled, f.writePerson.enabled,
                         f.videoChunk.enabled, f.widthWrite.enabled, f.heightWrite.enabled})
        EXPECT_FALSE(enabled);
    // A cleared recording box keeps its sub-fields' values.
    EXPECT_TRUE(f.writeTransport.checked);
    EXPECT_EQ(f.videoChunk.text, "60");

    f.reconnect.click();
    EXPECT_TRUE(f.attempts.enabled);

    EXPECT_EQ(acceptMessage(), "");
    EXPECT_FALSE(record.writeVideo);
    EXPECT_TRUE(record.writeOnlyNumObj);
    EXPECT_TRUE(record.writeTransport);
    EXPECT_TRUE(record.reconnect);
}

TEST_F(StreamFormTest, DecodersExcludeEachOtherOnlyByClicks)
{
    record.decodeNvidia = true;
    record.decodeDirectX = true;
    StreamForm& f = form();
    EXPECT_TRUE(f.decodeNvidia.checked);
    EXPECT_TRUE(f.decodeDirectX.checked);
    f.decodeNvidia.click();   // clears itself, and the other all the same
    EXPECT_FALSE(f.decodeNvidia.checked);
    EXPECT_FALSE(f.decodeDirectX.checked);
    f.decodeDirectX.click();
    f.decodeNvidia.click();
    EXPECT_FALSE(f.decodeDirectX.checked);
}

TEST_F(StreamFormTest, AcceptKeepsWindowIdAndAutorunAndClearsWhatIsNotOnTheForm)
{
    record.xWindow = 11;
    record.yWindow = 12;
    record.widthWindow = 13;
    record.heightWindow = 14;
    record.ID = 7;
    record.autoRun = true;
    record.display = 2;
    record.drawOptionsButtons = true;
    StreamForm& f = form();
    f.videoName.type(cp(" Выезд "));
    f.width.type("640");
    EXPECT_EQ(acceptMessage(), "");
    EXPECT_EQ(record.xWindow, 11);
    EXPECT_EQ(record.yWindow, 12);
    EXPECT_EQ(record.widthWindow, 13);
    EXPECT_EQ(record.heightWindow, 14);
    EXPECT_EQ(record.ID, 7);
    EXPECT_TRUE(record.autoRun);
    EXPECT_EQ(record.display, 0);
    EXPECT_FALSE(record.drawOptionsButtons);
    EXPECT_EQ(record.videoName, cp(" Выезд "));   // the name as typed
    EXPECT_EQ(record.width, 640);

    // A refused accept leaves the record alone.
    f.width.type("99999");
    EXPECT_EQ(acceptMessage(), cp(widthText));
    EXPECT_EQ(record.width, 640);
}

TEST_F(StreamFormTest, FindCameraFillsTheLinkOnlyWithAResult)
{
    StreamForm& f = form();
    f.findLink = [] { return std::optional<std::string>(); };
    f.findCamera.press();
    EXPECT_EQ(f.videoPath.text, "rtsp://cam");
    f.findLink = [] { return std::optional<std::string>("rtsp://admin:1@10.0.0.5:554/main"); };
    f.findCamera.press();
    EXPECT_EQ(f.videoPath.text, "rtsp://admin:1@10.0.0.5:554/main");
}
