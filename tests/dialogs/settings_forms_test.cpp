// The settings dialog and the messenger channel dialog driven without a
// window.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "dialogs/messenger_forms.h"
#include "dialogs/settings_form.h"
#include "form_test.h"
#include "support/temp_dir.h"

using namespace vx;
using namespace vx::dialogs;
using vx::dialogs::test::cp;
using vx::dialogs::test::acceptMessage;
using vx::dialogs::test::lastText;

namespace {

class SettingsTest : public ::testing::Test {
protected:
    SettingsTest()
    {
        record.systemLogPath = dir.path().string();
        record.recogLogPath = dir.path().string();
        record.startStatus = true;
        record.globalRestart = true;
        record.xWindow = 40;
        record.dataTimeFormat = "d.m.Y";
        record.perfLog = 1;
        record.videoStreams = {"vx_stream1.json"};
        form.fill();
    }
    FolderChooser chooser()
    {
        return [this](const std::string&) -> std::optional<std::string> { return pick; };
    }

    vx::test::TempDir dir;
    config::MainConfig record;
    ScriptedMessages messages;
    std::optional<std::string> pick;
    SettingsForm form{record, chooser(), messages};
};

} // namespace

TEST_F(SettingsTest, AcceptReplacesTheRecordWithDefaultsForWhatTheFormDoesNotHold)
{
    form.videoChunk.type("");
    form.maxSizeVideo.type("x");
    form.timeLife.type("");
    EXPECT_TRUE(form.accept());
    EXPECT_EQ(record.videoChunk, 300);
    EXPECT_EQ(record.maxSizeVideoDirectoryMb, 100u);
    EXPECT_EQ(record.timeLife, 0);
    EXPECT_TRUE(record.startStatus);
    EXPECT_TRUE(record.globalRestart);
    EXPECT_EQ(record.xWindow, -1);
    EXPECT_EQ(record.dataTimeFormat, "Y-m-d H:M:S");
    EXPECT_EQ(record.perfLog, 0);
    EXPECT_TRUE(record.videoStreams.empty());
}

TEST_F(SettingsTest, TheLogFormRefusesQuoteAndBackslashAndFoldersTheQuote)
{
    const std::string formatText = cp("Формат журнала номеров не может содержать символы \" и \\!");
    struct Case {
        TextField SettingsForm::*field;
        const char* text;
        std::string message;
    };
    const Case cases[] = {
        {&SettingsForm::recogFormat, "{plate}\\t", formatText},
        {&SettingsForm::reportsPath, "C:\\reports", ""},
        {&SettingsForm::reportsPath, "C:\\\"reports\"", cp("Папка для отчетов не может содержать символ \"!")},
        {&SettingsForm::videoPath, "\"", cp("Папка для видео-выхода не может содержать символ \"!")},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.text);
        form.fill();
        (form.*c.field).type(c.text);
        EXPECT_EQ(acceptMessage(form, messages), c.message);
    }
    // A folder that exists still can't be named with a quotation mark
    // (Windows has no folder of that name to begin with).
    const std::string quoted = (dir.path() / "a\"b").string();
    std::error_code noSuchFolder;
    if (!std::filesystem::create_directory(quoted, noSuchFolder))
        return;
    form.fill();
    form.systemLogPath.type(quoted);
    EXPECT_FALSE(form.accept());
    EXPECT_EQ(lastText(messages), cp("Папка системного журнала не может содержать символ \"!"));
}

TEST_F(SettingsTest, MissingFoldersTheRecognitionLogSpeaksLastAndAPickGoesIntoTheRecord)
{
    const std::string file = (dir.path() / "file.txt").string();
    std::ofstream(file) << "x";
    form.systemLogPath.type(file);   // a file is no folder
    form.recogLogPath.type((dir.path() / "none").string());
    form.reportsPath.type("/no/such/reports");   // not tested
    EXPECT_FALSE(form.accept());
    EXPECT_EQ(lastText(messages), cp("Несуществующая директория для журнала распознавания!"));
    form.recogLogPath.type(dir.path().string());
    EXPECT_FALSE(form.accept());
    EXPECT_EQ(messages.shown.back().text, cp("Несуществующая директория для системного журнала!"));
    EXPECT_EQ(record.reportsPath, "");

    // A folder picked goes into the record at once.
    record.videoPath = "/old/videos";
    form.videoPath.type("/typed/over");
    pick = std::string("/picked/videos");
    form.videoBrowse.press();
    EXPECT_EQ(form.videoPath.text, "/picked/videos");
    EXPECT_EQ(record.videoPath, "/picked/videos");   // before any OK, and Cancel keeps it
}

TEST(MessengerChannel, DelaysAreTestedWithTheirChecksClearTextsRefuseQuoteAndBackslashHiddenFieldsAreRead)
{
    config::MessengerChannel record;
    record.chatID = "-100";
    ScriptedMessages messages;
    MessengerChannelForm form(record, 3, messages);
    form.fill();
    form.delayAnyMS.text = "100001";   // its check is clear: the field is disabled
    EXPECT_FALSE(form.accept());
    EXPECT_EQ(lastText(messages), cp("Время пропуска должно быть в пределах от 0 до 100000 миллисекунд!"));
    form.delayAnyMS.text = "100000";

    struct Case {
        TextField MessengerChannelForm::*field;
        const char* label;
        const char* text;
    };
    const Case cases[] = {
        {&MessengerChannelForm::name, "Имя канала", "a\"b"},
        {&MessengerChannelForm::chatID, "ID канала", "a\\b"},
        {&MessengerChannelForm::server, "Почтовый сервер", "a\"b"},
        {&MessengerChannelForm::sender, "Отправитель", "a\\b"},
        {&MessengerChannelForm::receiver, "Получатель", "a\"b"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.label);
        const std::string kept = (form.*c.field).text;
        (form.*c.field).type(c.text);
        EXPECT_FALSE(form.accept());
        EXPECT_EQ(lastText(messages), cp((std::string(c.label) + " не может содержать символы \" и \\!").c_str()));
        (form.*c.field).type(kept);
    }
    EXPECT_EQ(record.channelID, 0);   // nothing stored yet

    form.token.type("se\"cr\\et");   // stored enciphered
    form.port.type("");   // hidden for this type, read all the same
    form.delayAny.click();
    EXPECT_TRUE(form.accept());
    EXPECT_EQ(record.token, "se\"cr\\et");
    EXPECT_EQ(record.delayAnyMS, 100000);
    EXPECT_TRUE(record.delayAny);
    EXPECT_EQ(record.chatID, "-100");
    EXPECT_EQ(record.port, 465);   // an empty mail port
    EXPECT_EQ(record.channelID, 4);
}
