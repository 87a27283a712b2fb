#include "config/camera_config.h"

#include <gtest/gtest.h>

#include "config/text_codec.h"
#include "support/text_file.h"
#include "support/captured_stderr.h"
#include "support/temp_dir.h"

namespace vx::config {
namespace {

using test::readText;
using test::writeFileBytes;

std::string defaultSignal(int index, bool last)
{
    return "\t\t{\n"
           "\t\t\t\"numSignal\":" + std::to_string(index) + ",\n"
           "\t\t\t\"on\":false,\n"
           "\t\t\t\"name\":\"\",\n"
           "\t\t\t\"typeOpen\":true,\n"
           "\t\t\t\"typeSendAll\":true,\n"
           "\t\t\t\"nameWhiteList\":\"Empty\",\n"
           "\t\t\t\"timeOutClose\":10000,\n"
           "\t\t\t\"notSendClose\":false,\n"
           "\t\t\t\"timeOutSend\":500,\n"
           "\t\t\t\"noWhiteSignal\":false,\n"
           "\t\t\t\"allSignalsFlag\":false,\n"
           "\t\t\t\"minTimeOutBWSignals\":0,\n"
           "\t\t\t\"conditionsSignals\":0,\n"
           "\t\t\t\"signal.typeRequest\":0,\n"
           "\t\t\t\"signal.URL\":\"\",\n"
           "\t\t\t\"signal.body\":\"\",\n"
           "\t\t\t\"signal.bodyEncoding\":0,\n"
           "\t\t\t\"signal.image\":false,\n"
           "\t\t\t\"signal.smallImage\":false,\n"
           "\t\t\t\"signal.plateImage\":false,\n"
           "\t\t\t\"signal.contentType\":0,\n"
           "\t\t\t\"signal.carImage\":false\n" +
           (last ? "\t\t}\n" : "\t\t},\n");
}

std::string defaultText()
{
    std::string text = "{\n"
                       "\t\"name\":\"CameraConfig\",\n"
                       "\t\"version\":1,\n"
                       "\t\"Common\":{\n"
                       "\t\t\"videoName\":\"\",\n"
                       "\t\t\"videoPath\":\"\",\n"
                       "\t\t\"width\":0,\n"
                       "\t\t\"height\":0,\n"
                       "\t\t\"xWindow\":100,\n"
                       "\t\t\"yWindow\":100,\n"
                       "\t\t\"widthWindow\":800,\n"
                       "\t\t\"heightWindow\":600,\n"
                       "\t\t\"display\":0,\n"
                       "\t\t\"fps\":5,\n"
                       "\t\t\"reconnect\":false,\n"
                       "\t\t\"secondsToReconnect\":1,\n"
                       "\t\t\"attempts\":0,\n"
                       "\t\t\"unShowVideo\":false,\n"
                       "\t\t\"showConsole\":false,\n"
                       "\t\t\"autoRun\":false,\n"
                       "\t\t\"aspect\":false,\n"
                       "\t\t\"onlyVideoStream\":false,\n"
                       "\t\t\"drawOptionsButtons\":false,\n"
                       "\t\t\"writeVideo\":false,\n"
                       "\t\t\"writeOnlyNumObj\":false,\n"
                       "\t\t\"writeTransport\":false,\n"
                       "\t\t\"writePerson\":false,\n"
                       "\t\t\"videoChunk\":0,\n"
                       "\t\t\"widthWrite\":0,\n"
                       "\t\t\"heightWrite\":0,\n"
                       "\t\t\"tcp\":false,\n"
                       "\t\t\"decodeNvidia\":false,\n"
                       "\t\t\"decodeDirectX\":false,\n"
                       "\t\t\"ID\":0\n"
                       "\t},\n"
                       "\t\"Recognition\":{\n"
                       "\t\t\"unShowResultVideo\":false,\n"
                       "\t\t\"debugModeRecog\":false,\n"
                       "\t\t\"method\":1,\n"
                       "\t\t\"delaySendSame\":1000,\n"
                       "\t\t\"trajTypeSpeed\":0,\n"
                       "\t\t\"tLimitTime\":10,\n"
                       "\t\t\"tLimitFrames\":100,\n"
                       "\t\t\"minConf\":0.5,\n"
                       "\t\t\"showTime\":1000,\n"
                       "\t\t\"Square\":false,\n"
                       "\t\t\"minSquare\":0,\n"
                       "\t\t\"maxSquare\":1,\n"
                       "\t\t\"useZone\":false,\n"
                       "\t\t\"x\":0,\n"
                       "\t\t\"y\":0,\n"
                       "\t\t\"width\":1,\n"
                       "\t\t\"height\":1,\n"
                       "\t\t\"linesY\":0.5,\n"
                       "\t\t\"lineAlfa\":0,\n"
                       "\t\t\"lineDist\":0.05,\n"
                       "\t\t\"portServer\":1234,\n"
                       "\t\t\"timeoutServerRecog\":4,\n"
                       "\t\t\"deleteBorderNumbers\":true,\n"
                       "\t\t\"deleteNumbersWidthoutTemplate\":false,\n"
                       "\t\t\"noDeleteWithChina\":false,\n"
                       "\t\t\"invert\":false\n"
                       "\t},\n"
                       "\t\"ControlPortServer\":1235,\n"
                       "\t\"ControlReport\":{\n"
                       "\t\t\"onlyOneNumber\":false,\n"
                       "\t\t\"whiteLists\":false,\n"
                       "\t\t\"timeMinBetweenSimilarCar\":120,\n"
                       "\t\t\"timeMinStop\":30,\n"
                       "\t\t\"dailyReport\":false,\n"
                       "\t\t\"notDelMoveGroup\":true,\n"
                       "\t\t\"notDelMoveGroupQualThresh\":0.7,\n"
                       "\t\t\"timeDailyReport\":\"0000-00-00 00:00:00\",\n"
                       "\t\t\"timeReportStart\":\"0000-00-00 00:00:00\",\n"
                       "\t\t\"timeReportEnd\":\"0000-00-00 00:00:00\"\n"
                       "\t},\n"
                       "\t\"Control\":[\n";
    for (int i = 0; i < 4; ++i)
        text += defaultSignal(i, i == 3);
    return text + "\t],\n"
                  "\t\"Buttons\":{\n"
                  "\t\t\"buttonOpen\":false,\n"
                  "\t\t\"buttonOpenSignal\":0,\n"
                  "\t\t\"buttonClose\":false,\n"
                  "\t\t\"buttonCloseSignal\":0\n"
                  "\t}\n"
                  "}";
}

// A body with quotes, backslashes (before letters the second unescape leaves
// alone), a tab and a CR LF line break.
const std::string awayBody = "{\"plate\":\"{plate}\",\"path\":\"C:\\data\\in\"}\r\nline2\ttab";
const std::string awayBodyInFile =
    "{\\\"plate\\\":\\\"{plate}\\\",\\\"path\\\":\\\"C:\\\\data\\\\in\\\"}\\r\\nline2\\ttab";

CameraConfig awayFromDefaults()
{
    CameraConfig c;
    CameraCommon& m = c.common;
    m.videoName = utf8ToCp1251("Въезд 1");
    m.videoPath = "C:\\video\\gate.mp4";
    m.width = 1920; m.height = 1080; m.xWindow = 10; m.yWindow = 20; m.widthWindow = 640;
    m.heightWindow = 480; m.display = 1; m.fps = 12.5f; m.reconnect = true; m.secondsToReconnect = 5;
    m.attempts = 3; m.unShowVideo = true; m.showConsole = true; m.ID = 7; m.autoRun = true; m.aspect = true;
    m.drawOptionsButtons = true; m.onlyVideoStream = true; m.writeVideo = true; m.writeOnlyNumObj = true;
    m.writeTransport = true; m.writePerson = true; m.videoChunk = 600; m.widthWrite = 1280;
    m.heightWrite = 720; m.tcp = true; m.decodeNvidia = true; m.decodeDirectX = true;
    CameraRecognition& r = c.recognition;
    r.unShowResultVideo = true; r.debugModeRecog = true; r.method = 4; r.delaySendSame = 3000;
    r.trajTypeSpeed = 1; r.tLimitTime = 20; r.tLimitFrames = 200; r.minConf = 0.65f; r.showTime = 2000;
    r.Square = true; r.minSquare = 0.01f; r.maxSquare = 0.5f; r.useZone = true; r.x = 0.1f; r.y = 0.2f;
    r.width = 0.7f; r.height = 0.6f; r.linesY = 0.4f; r.lineAlfa = 15.5f; r.lineDist = 0.1f; r.invert = true;
    r.portServer = 9999; r.timeoutServerRecog = 2.5f; r.deleteBorderNumbers = false;
    r.deleteNumbersWidthoutTemplate = true; r.noDeleteWithChina = true;
    CameraControl& k = c.control;
    k.ControlPortServer = 8888; k.onlyOneNumber = true; k.whiteLists = true; k.timeMinBetweenSimilarCar = 60;
    k.timeMinStop = 45; k.dailyReport = true; k.notDelMoveGroup = false; k.notDelMoveGroupQualThresh = 0.85f;
    k.timeDailyReport = {2024, 3, 0, 7, 9, 5, 1, 0};
    k.timeReportStart = {2024, 1, 0, 1, 0, 0, 0, 0};
    k.timeReportEnd = {2024, 12, 0, 31, 23, 59, 59, 0};
    for (int i = 0; i < 4; ++i) {
        SignalConfig& s = k.Control[static_cast<std::size_t>(i)];
        s.numSignal = i; s.on = true; s.name = utf8ToCp1251("Сигнал " + std::to_string(i));
        s.typeOpen = false; s.typeSendAll = false; s.nameWhiteList = utf8ToCp1251("Гости");
        s.signal.type = 1; s.signal.URL = "http://10.0.0.9/api?plate={plate}&n=" + std::to_string(i);
        s.signal.body = awayBody; s.signal.bodyEncoding = 1; s.signal.image = true; s.signal.smallImage = false;
        s.signal.plateImage = true; s.signal.carImage = true; s.signal.contentType = 1;
        s.timeOutClose = 5000; s.notSendClose = true; s.timeOutSend = 700; s.noWhiteSignal = true;
        s.minTimeOutBWSignals = 30; s.conditionsSignals = 3; s.allSignalsFlag = true;
    }
    k.buttonOpen = true; k.buttonOpenSignal = 2; k.buttonClose = true; k.buttonCloseSignal = 3;
    return c;
}

std::string awaySignal(int index, bool last)
{
    const std::string n = std::to_string(index);
    return "\t\t{\n"
           "\t\t\t\"numSignal\":" + n + ",\n"
           "\t\t\t\"on\":true,\n"
           "\t\t\t\"name\":\"Сигнал " + n + "\",\n"
           "\t\t\t\"typeOpen\":false,\n"
           "\t\t\t\"typeSendAll\":false,\n"
           "\t\t\t\"nameWhiteList\":\"Гости\",\n"
           "\t\t\t\"timeOutClose\":5000,\n"
           "\t\t\t\"notSendClose\":true,\n"
           "\t\t\t\"timeOutSend\":700,\n"
           "\t\t\t\"noWhiteSignal\":true,\n"
           "\t\t\t\"allSignalsFlag\":true,\n"
           "\t\t\t\"minTimeOutBWSignals\":30,\n"
           "\t\t\t\"conditionsSignals\":3,\n"
           "\t\t\t\"signal.typeRequest\":1,\n"
           "\t\t\t\"signal.URL\":\"http://10.0.0.9/api?plate={plate}&n=" + n + "\",\n"
           "\t\t\t\"signal.body\":\"" + awayBodyInFile + "\",\n"
           "\t\t\t\"signal.bodyEncoding\":1,\n"
           "\t\t\t\"signal.image\":true,\n"
           "\t\t\t\"signal.smallImage\":false,\n"
           "\t\t\t\"signal.plateImage\":true,\n"
           "\t\t\t\"signal.contentType\":1,\n"
           "\t\t\t\"signal.carImage\":true\n" +
           (last ? "\t\t}\n" : "\t\t},\n");
}

std::string awayText()
{
    std::string text = "{\n"
                       "\t\"name\":\"CameraConfig\",\n"
                       "\t\"version\":1,\n"
                       "\t\"Common\":{\n"
                       "\t\t\"videoName\":\"Въезд 1\",\n"
                       "\t\t\"videoPath\":\"C:\\\\video\\\\gate.mp4\",\n"
                       "\t\t\"width\":1920,\n"
                       "\t\t\"height\":1080,\n"
                       "\t\t\"xWindow\":10,\n"
                       "\t\t\"yWindow\":20,\n"
                       "\t\t\"widthWindow\":640,\n"
                       "\t\t\"heightWindow\":480,\n"
                       "\t\t\"display\":1,\n"
                       "\t\t\"fps\":12.5,\n"
                       "\t\t\"reconnect\":true,\n"
                       "\t\t\"secondsToReconnect\":5,\n"
                       "\t\t\"attempts\":3,\n"
                       "\t\t\"unShowVideo\":true,\n"
                       "\t\t\"showConsole\":true,\n"
                       "\t\t\"autoRun\":true,\n"
                       "\t\t\"aspect\":true,\n"
                       "\t\t\"onlyVideoStream\":true,\n"
                       "\t\t\"drawOptionsButtons\":true,\n"
                       "\t\t\"writeVideo\":true,\n"
                       "\t\t\"writeOnlyNumObj\":true,\n"
                       "\t\t\"writeTransport\":true,\n"
                       "\t\t\"writePerson\":true,\n"
                       "\t\t\"videoChunk\":600,\n"
                       "\t\t\"widthWrite\":1280,\n"
                       "\t\t\"heightWrite\":720,\n"
                       "\t\t\"tcp\":true,\n"
                       "\t\t\"decodeNvidia\":true,\n"
                       "\t\t\"decodeDirectX\":true,\n"
                       "\t\t\"ID\":7\n"
                       "\t},\n"
                       "\t\"Recognition\":{\n"
                       "\t\t\"unShowResultVideo\":true,\n"
                       "\t\t\"debugModeRecog\":true,\n"
                       "\t\t\"method\":4,\n"
                       "\t\t\"delaySendSame\":3000,\n"
                       "\t\t\"trajTypeSpeed\":1,\n"
                       "\t\t\"tLimitTime\":20,\n"
                       "\t\t\"tLimitFrames\":200,\n"
                       "\t\t\"minConf\":0.65,\n"
                       "\t\t\"showTime\":2000,\n"
                       "\t\t\"Square\":true,\n"
                       "\t\t\"minSquare\":0.01,\n"
                       "\t\t\"maxSquare\":0.5,\n"
                       "\t\t\"useZone\":true,\n"
                       "\t\t\"x\":0.1,\n"
                       "\t\t\"y\":0.2,\n"
                       "\t\t\"width\":0.7,\n"
                       "\t\t\"height\":0.6,\n"
                       "\t\t\"linesY\":0.4,\n"
                       "\t\t\"lineAlfa\":15.5,\n"
                       "\t\t\"lineDist\":0.1,\n"
                       "\t\t\"portServer\":4000,\n"
                       "\t\t\"timeoutServerRecog\":2.5,\n"
                       "\t\t\"deleteBorderNumbers\":false,\n"
                       "\t\t\"deleteNumbersWidthoutTemplate\":true,\n"
                       "\t\t\"noDeleteWithChina\":true,\n"
                       "\t\t\"invert\":true\n"
                       "\t},\n"
                       "\t\"ControlPortServer\":4001,\n"
                       "\t\"ControlReport\":{\n"
                       "\t\t\"onlyOneNumber\":true,\n"
                       "\t\t\"whiteLists\":true,\n"
                       "\t\t\"timeMinBetweenSimilarCar\":60,\n"
                       "\t\t\"timeMinStop\":45,\n"
                       "\t\t\"dailyReport\":true,\n"
                       "\t\t\"notDelMoveGroup\":false,\n"
                       "\t\t\"notDelMoveGroupQualThresh\":0.85,\n"
                       "\t\t\"timeDailyReport\":\"2024-03-07 09:05:01\",\n"
                       "\t\t\"timeReportStart\":\"2024-01-01 00:00:00\",\n"
                       "\t\t\"timeReportEnd\":\"2024-12-31 23:59:59\"\n"
                       "\t},\n"
                       "\t\"Control\":[\n";
    for (int i = 0; i < 4; ++i)
        text += awaySignal(i, i == 3);
    return text + "\t],\n"
                  "\t\"Buttons\":{\n"
                  "\t\t\"buttonOpen\":true,\n"
                  "\t\t\"buttonOpenSignal\":2,\n"
                  "\t\t\"buttonClose\":true,\n"
                  "\t\t\"buttonCloseSignal\":3\n"
                  "\t}\n"
                  "}";
}

class CameraConfigFile : public ::testing::Test {
protected:
    std::string dir() const { return folder_.path().string(); }
    std::string path() const { return cameraFilePath(dir(), 7); }
    std::filesystem::path file() const { return folder_.path() / "vx_stream7.json"; }

    bool loadText(const std::string& text, CameraConfig& config, std::int32_t mainVideoChunk = 300)
    {
        writeFileBytes(file(), text);
        test::CapturedStderr err;
        const bool ok = loadCamera(path(), config, mainVideoChunk);
        errors_ = err.text();
        return ok;
    }

    test::RuntimeSandbox runtime_;
    test::TempDir folder_;
    std::string errors_;
};

TEST_F(CameraConfigFile, FreshRecordWritesTheDefaultFile)
{
    EXPECT_EQ(cameraFileName(12), "vx_stream12.json");
    saveCamera(path(), CameraConfig{}, 1234, 1235);
    EXPECT_EQ(readText(file()), defaultText());
}

TEST_F(CameraConfigFile, AllFieldsAwayFromDefaultsRoundTripByteForByte)
{
    // The ports come from the services (4000, 4001), not from the record.
    saveCamera(path(), awayFromDefaults(), 4000, 4001);
    const std::string first = readText(file());
    ASSERT_EQ(first, awayText());

    CameraConfig back;
    test::CapturedStderr err;
    ASSERT_TRUE(loadCamera(path(), back, 300));
    EXPECT_EQ(err.text(), "");
    EXPECT_EQ(back.common.videoName, utf8ToCp1251("Въезд 1"));
    EXPECT_EQ(back.common.videoPath, "C:\\video\\gate.mp4");
    EXPECT_EQ(back.control.Control[2].signal.body, awayBody);
    EXPECT_EQ(back.recognition.portServer, 4000);
    EXPECT_EQ(back.control.ControlPortServer, 4001);
    EXPECT_EQ(back.control.timeReportEnd.second, 59);
    saveCamera(path(), back, 4000, 4001);
    EXPECT_EQ(readText(file()), first);
}

TEST_F(CameraConfigFile, DocumentedLossesOfASaveAndLoad)
{
    CameraConfig config;
    config.common.videoPath = "\\\\server\\cam";              // \\server\cam
    config.control.Control[0].signal.body = "C:\\new\\table";  // a backslash before n and t
    saveCamera(path(), config, 1234, 1235);
    EXPECT_NE(readText(file()).find("\"videoPath\":\"\\\\\\\\server\\\\cam\""), std::string::npos);
    ASSERT_TRUE(loadCamera(path(), config, 300));
    EXPECT_EQ(config.common.videoPath, "\\server\\cam") << "the leading pair collapses a second time";
    EXPECT_EQ(config.control.Control[0].signal.body, "C:\new\table") << "the body is unescaped twice";
}

TEST_F(CameraConfigFile, SaveWritesTheServicesPortsAndTheSlotIndex)
{
    CameraConfig config;
    config.recognition.portServer = 1;
    config.control.ControlPortServer = 2;
    config.control.Control[2].numSignal = 7;
    const std::string text = cameraConfigText(config, 5000, 5001);
    EXPECT_NE(text.find("\t\t\"portServer\":5000,\n"), std::string::npos);
    EXPECT_NE(text.find("\t\"ControlPortServer\":5001,\n"), std::string::npos);
    EXPECT_EQ(text.find("\"numSignal\":7"), std::string::npos);
    EXPECT_NE(text.find("\t\t\t\"numSignal\":2,\n"), std::string::npos);
}

// A record whose every section is away from what any read would give.
CameraConfig touched()
{
    CameraConfig c = awayFromDefaults();
    c.control.Control[3].signal.name = "Sample";
    return c;
}

TEST_F(CameraConfigFile, ReaderTable)
{
    struct Case {
        const char* name;
        std::string text;
        bool ok;
        std::string errors;
        std::function<void(const CameraConfig&)> check;
    };
    const std::string sections = "\"Recognition\":{},\"ControlReport\":{}";
    const Case cases[] = {
        {"old file: the reader's defaults, not a fresh record's",
         "{\"Common\":{\"videoName\":\"A\",\"ID\":3}," + sections + "}", true, "",
         [](const CameraConfig& c) {
             EXPECT_EQ(c.common.videoName, "A");
             EXPECT_EQ(c.common.ID, 3);
             EXPECT_EQ(c.common.width, 0) << "the common part starts from a fresh record";
             EXPECT_EQ(c.common.xWindow, 100);
             EXPECT_FLOAT_EQ(c.common.fps, 5.0f);
             EXPECT_EQ(c.common.videoChunk, 300) << "0 takes the main config's";
             EXPECT_EQ(c.recognition.method, 0);
             EXPECT_FLOAT_EQ(c.recognition.minConf, 0.3f);
             EXPECT_FLOAT_EQ(c.recognition.lineDist, 0.0f);
             EXPECT_FLOAT_EQ(c.recognition.timeoutServerRecog, 0.4f);
             EXPECT_TRUE(c.recognition.deleteBorderNumbers);
             EXPECT_EQ(c.recognition.portServer, 1234);
             EXPECT_EQ(c.control.ControlPortServer, 1235);
             EXPECT_EQ(c.control.timeMinStop, 180);
             EXPECT_FALSE(c.control.notDelMoveGroup);
             EXPECT_EQ(c.control.timeMinBetweenSimilarCar, 120);
             EXPECT_EQ(c.control.timeDailyReport.year, 0);
             EXPECT_EQ(c.control.timeDailyReport.month, 3) << "a missing date keeps all but the year";
             EXPECT_EQ(c.control.Control[0].name, utf8ToCp1251("Сигнал 0")) << "no Control: slots stay";
             EXPECT_FALSE(c.control.buttonOpen) << "no Buttons: the buttons are cleared";
             EXPECT_EQ(c.control.buttonCloseSignal, 0);
         }},
        {"slot keys missing take the reader's defaults",
         "{\"Common\":{}," + sections + ",\"Control\":[{},{\"numSignal\":7}],\"Buttons\":{\"buttonClose\":true}}",
         true, "",
         [](const CameraConfig& c) {
             EXPECT_EQ(c.control.Control[0].numSignal, 0);
             EXPECT_FALSE(c.control.Control[0].typeOpen);
             EXPECT_FALSE(c.control.Control[0].typeSendAll);
             EXPECT_EQ(c.control.Control[0].nameWhiteList, "Empty");
             EXPECT_EQ(c.control.Control[0].timeOutClose, 10000);
             EXPECT_EQ(c.control.Control[0].signal.name, "Custom") << "the receiver name isn't in the file";
             EXPECT_EQ(c.control.Control[1].numSignal, 7);
             EXPECT_EQ(c.control.Control[2].name, utf8ToCp1251("Сигнал 2")) << "beyond the array: kept";
             EXPECT_EQ(c.control.Control[3].signal.name, "Sample");
             EXPECT_FALSE(c.control.buttonOpen);
             EXPECT_EQ(c.control.buttonOpenSignal, 0);
             EXPECT_TRUE(c.control.buttonClose);
         }},
        {"more than four elements", "{\"Common\":{}," + sections +
             ",\"Control\":[{},{},{},{\"name\":\"four\"},{\"name\":\"five\"}]}",
         true, "", [](const CameraConfig& c) { EXPECT_EQ(c.control.Control[3].name, "four"); }},
        {"no Recognition section fails after the common part",
         "{\"Common\":{\"videoName\":\"A\"},\"ControlReport\":{}}", false, "[VX2S] loadCamera parse error type \n",
         [](const CameraConfig& c) {
             EXPECT_EQ(c.common.videoName, "A");
             EXPECT_EQ(c.common.ID, 0);
             EXPECT_EQ(c.recognition.method, 4) << "the recognition part is untouched";
         }},
        {"wrong type in Common: reset, read up to it",
         "{\"Common\":{\"videoName\":\"A\",\"width\":\"wide\",\"xWindow\":5}," + sections + "}", false,
         "[VX2S] loadCamera parse error type \n",
         [](const CameraConfig& c) {
             EXPECT_EQ(c.common.videoName, "A");
             EXPECT_EQ(c.common.width, 0);
             EXPECT_EQ(c.common.xWindow, 100);
             EXPECT_EQ(c.common.ID, 0);
         }},
        {"Control that isn't an array", "{\"Common\":{}," + sections + ",\"Control\":{\"a\":1}}", false,
         "[VX2S] loadCamera parse error type \n",
         [](const CameraConfig& c) { EXPECT_EQ(c.control.timeMinStop, 180); }},
        {"a date that doesn't parse as a date", "{\"Common\":{},\"Recognition\":{},\"ControlReport\":{"
             "\"timeDailyReport\":\"2025-06\",\"timeReportStart\":\"xxxx-01-02 03:04:05\"}}",
         false, "[VX2S] loadCamera parse error type \n",
         [](const CameraConfig& c) {
             EXPECT_EQ(c.control.timeDailyReport.year, 0);
             EXPECT_EQ(c.control.timeDailyReport.day, 7);
             EXPECT_EQ(c.control.timeReportStart.year, 0);
             EXPECT_EQ(c.control.timeReportEnd.year, 2024) << "not reached";
         }},
        {"truncated: nothing is touched", "{\"Common\":{\"videoName\":\"A\"", false,
         "[VX2S] loadCamera parse error at byte 27\n",   // one past the 26 bytes
         [](const CameraConfig& c) { EXPECT_EQ(c.common.ID, 7); }},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        CameraConfig config = touched();
        EXPECT_EQ(loadText(c.text, config), c.ok);
        EXPECT_EQ(errors_, c.errors);
        c.check(config);
        EXPECT_EQ(readText(file()), c.text) << "a read never rewrites the file";
    }
}

TEST_F(CameraConfigFile, VideoChunkZeroTakesTheMainConfigsAndIsSavedSo)
{
    CameraConfig config;
    ASSERT_TRUE(loadText("{\"Common\":{\"videoChunk\":0},\"Recognition\":{},\"ControlReport\":{}}", config, 450));
    EXPECT_EQ(config.common.videoChunk, 450);
    saveCamera(path(), config, 1234, 1235);
    EXPECT_NE(readText(file()).find("\t\t\"videoChunk\":450,\n"), std::string::npos);
}

TEST_F(CameraConfigFile, MissingFileFailsSilentlyAndWritesNothing)
{
    CameraConfig config = touched();
    test::CapturedStderr err;
    EXPECT_FALSE(loadCamera(path(), config, 300));
    EXPECT_EQ(err.text(), "");
    EXPECT_FALSE(std::filesystem::exists(file()));
    EXPECT_EQ(config.common.ID, 7);
}

} // namespace
} // namespace vx::config
