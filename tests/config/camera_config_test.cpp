#include "config/camera_config.h"

#include <gtest/gtest.h>

#include "config/text_codec.h"
#include "camera_away_record.h"
#include "config_folder.h"

namespace vx::config {
namespace {

class CameraConfigFile : public test::ConfigFileTest {
protected:
    std::string path() const { return cameraFilePath(dir(), 7); }
    std::string written() const { return folder_.bytes("vx_stream7.json"); }

    bool loadText(const std::string& text, CameraConfig& config, std::int32_t mainVideoChunk = 300)
    {
        return loadWith("vx_stream7.json", text, [&] { return loadCamera(path(), config, mainVideoChunk); });
    }
};

TEST_F(CameraConfigFile, DocumentedLossesOfASaveAndLoad)
{
    CameraConfig config;
    config.common.videoPath = "\\\\server\\cam";              // \\server\cam
    config.control.Control[0].signal.body = "C:\\new\\table";  // a backslash before n and t
    saveCamera(path(), config, 1234, 1235);
    EXPECT_NE(written().find("\"videoPath\":\"\\\\\\\\server\\\\cam\""), std::string::npos);
    ASSERT_TRUE(loadCamera(path(), config, 300));
    EXPECT_EQ(config.common.videoPath, "\\server\\cam") << "the leading pair collapses a second time";
    EXPECT_EQ(config.control.Control[0].signal.body, "C:\new\table") << "the body is unescaped twice";
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
        EXPECT_EQ(written(), c.text) << "a read never rewrites the file";
    }
}

TEST_F(CameraConfigFile, MissingFileFailsSilentlyAndWritesNothing)
{
    CameraConfig config = touched();
    test::CapturedStderr err;
    EXPECT_FALSE(loadCamera(path(), config, 300));
    EXPECT_EQ(err.text(), "");
    EXPECT_FALSE(std::filesystem::exists(folder_.file("vx_stream7.json")));
    EXPECT_EQ(config.common.ID, 7);
}

} // namespace
} // namespace vx::config
