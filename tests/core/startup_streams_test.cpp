#include "core/startup_streams.h"

#include <sstream>
#include <vector>

#include <gtest/gtest.h>

#include "config/camera_config.h"
#include "config/config_file.h"
#include "config/main_config.h"
#include "config/text_codec.h"
#include "config/white_list.h"
#include "maintenance/system_log.h"
#include "support/captured_stderr.h"
#include "support/temp_dir.h"

namespace vx::core {
namespace {

namespace fs = std::filesystem;
using test::readFileBytes;
using test::writeFileBytes;

using test::logTexts;

class StartupStreams : public ::testing::Test {
protected:
    StartupStreams()
    {
        fs::create_directories(configs());
        state_.ConfigDirectory = configs().string();
        auto log = std::make_unique<maintenance::LogBuffer>(logFile(), maintenance::LogMode::appendQuiet);
        log->setMinLevel(maintenance::logTrace);
        maintenance::setSystemLog(std::move(log));
        hooks_.showMessage = [this](const std::string& title, const std::string& text) {
            messages_.push_back(config::cp1251ToUtf8(title) + "|" + config::cp1251ToUtf8(text));
        };
    }
    ~StartupStreams() override { maintenance::setSystemLog(nullptr); }

    fs::path configs() const { return dir_.path() / "configs"; }
    fs::path logFile() const { return dir_.path() / "log.txt"; }

    // A stream file vx_stream<id>.json named `name` in 1251.
    void writeStream(std::int32_t id, const std::string& name, bool autoRun)
    {
        config::CameraConfig camera;
        camera.common.ID = id;
        camera.common.videoName = config::utf8ToCp1251(name);
        camera.common.autoRun = autoRun;
        config::saveCamera(config::cameraFilePath(state_.ConfigDirectory, id), camera, 1234, 1235);
    }

    test::RuntimeSandbox runtime_;
    test::TempDir dir_;
    AppState state_;
    StartupHooks hooks_;
    std::vector<std::string> messages_;
};

TEST_F(StartupStreams, EveryReadableFileJoinsTheTableInFileOrder)
{
    writeStream(4, "Въезд", true);
    writeStream(2, "Выезд", false);
    writeFileBytes(configs() / "vx_stream3.json", "{\"Common\":{\"ID\":3");   // broken
    state_.liveMainConfig.videoStreams = {"vx_stream4.json", "vx_stream2.json"};
    test::CapturedStderr err;
    loadStreams(state_);
    EXPECT_EQ(err.text(), "");
    ASSERT_EQ(state_.streams.size(), 2);
    EXPECT_EQ(state_.streams.collectIds(), (std::vector<std::int32_t>{4, 2}));
    EXPECT_EQ(state_.streams.collectPlanned(), (std::vector<bool>{true, false}));
    EXPECT_EQ(state_.streams.getConfig(1).videoChunk, 300) << "0 in the file takes the main config's";
    EXPECT_EQ(logTexts(logFile()), (std::vector<std::string>{
                                       "[TRACE]LoadCamera vx_stream4.json ok!",
                                       "[TRACE]AddCamera " + config::utf8ToCp1251("Въезд") + " ok!",
                                       "[TRACE]LoadCamera vx_stream2.json ok!",
                                       "[TRACE]AddCamera " + config::utf8ToCp1251("Выезд") + " ok!",
                                   }));
    EXPECT_EQ(state_.status.get(), "");
}

TEST_F(StartupStreams, AFailedNameShiftsThePlannedToggleOffItsStream)
{
    // Positions: 0 broken, 1 missing, 2 "A" (added at index 0), 3 "B" (index 1).
    // Both have autoRun false, but the toggle goes to positions 2 and 3,
    // which are past the table's end when each is added: both stay planned.
    writeFileBytes(configs() / "vx_stream1.json", "{\"Common\":{\"ID\":1");
    writeStream(5, "A", false);
    writeStream(6, "B", false);
    state_.liveMainConfig.videoStreams = {"vx_stream1.json", "vx_stream9.json", "vx_stream5.json",
                                          "vx_stream6.json"};
    test::CapturedStderr err;
    loadStreams(state_);
    EXPECT_EQ(err.text(), "[VX2S] loadCamera parse error at byte 18\n");
    EXPECT_EQ(state_.streams.tableIds(), (std::vector<std::int32_t>{5, 6}));
    EXPECT_EQ(state_.streams.tablePlanned(), (std::vector<bool>{true, true}));
    // The failed names stay listed, in their places, without autorun flags.
    EXPECT_EQ(state_.streams.collectIds(), (std::vector<std::int32_t>{1, 9, 5, 6}));
    EXPECT_EQ(state_.streams.collectPlanned(), (std::vector<bool>{false, false, true, true}));
    EXPECT_EQ(logTexts(logFile()), (std::vector<std::string>{
                                       "[ERROR]LoadCamera vx_stream1.json error!",
                                       "[ERROR]LoadCamera vx_stream9.json error!",
                                       "[TRACE]LoadCamera vx_stream5.json ok!",
                                       "[TRACE]AddCamera A ok!",
                                       "[TRACE]LoadCamera vx_stream6.json ok!",
                                       "[TRACE]AddCamera B ok!",
                                   }));
}

TEST_F(StartupStreams, AFullTableRefusesTheStreamWithAStatusText)
{
    for (std::int32_t i = 0; i < maxStreams; ++i) {
        std::int32_t id = 100 + i;
        state_.streams.addStream(config::CameraCommon{}, {}, {}, id, true);
    }
    writeStream(8, "Полный", true);
    state_.liveMainConfig.videoStreams = {"vx_stream8.json"};
    loadStreams(state_);
    EXPECT_EQ(state_.streams.size(), maxStreams);
    EXPECT_EQ(config::cp1251ToUtf8(state_.status.get()), "Ошибка в загрузке настроек видеопотока vx_stream8.json");
    EXPECT_EQ(logTexts(logFile()).back(), "[ERROR]AddCamera " + config::utf8ToCp1251("Полный") + " error!");
}

TEST_F(StartupStreams, ABrokenFileKeepsItsPlaceAndItsIdThroughASave)
{
    writeStream(0, "A", true);
    writeFileBytes(configs() / "vx_stream1.json", "{\"Common\":{\"ID\":1");
    writeStream(2, "C", true);
    state_.liveMainConfig.videoStreams = {"vx_stream0.json", "vx_stream1.json", "vx_stream2.json"};
    state_.liveMainConfig.autoRunStreams = {false, true, false};
    test::CapturedStderr err;
    loadStreams(state_);
    EXPECT_EQ(state_.streams.size(), 2);
    saveMainConfig(state_);
    config::MainConfig saved;
    config::MainConfigFolders folders;
    ASSERT_TRUE(config::loadConfig(dir_.path().string(), state_.ConfigDirectory, saved, folders));
    EXPECT_EQ(saved.videoStreams,
              (std::vector<std::string>{"vx_stream0.json", "vx_stream1.json", "vx_stream2.json"}));
    EXPECT_EQ(saved.autoRunStreams, (std::vector<bool>{true, true, true}));
    // A new stream takes a fresh ID, not the broken file's.
    std::int32_t id = 0;
    state_.streams.addStream(config::CameraCommon{}, {}, {}, id, false);
    EXPECT_EQ(id, 3);
    // Removing a stream before it keeps it after the ones before it.
    std::string name;
    state_.streams.removeStream(0, name);
    EXPECT_EQ(state_.streams.collectIds(), (std::vector<std::int32_t>{1, 2, 3}));
}

TEST_F(StartupStreams, ACopiedFileWithATakenIdGetsAFileOfItsOwn)
{
    writeStream(0, "B", true);
    fs::rename(configs() / "vx_stream0.json", configs() / "vx_stream2.json");
    writeStream(0, "C", false);
    fs::rename(configs() / "vx_stream0.json", configs() / "copy.json");
    writeStream(0, "A", true);
    writeFileBytes(configs() / "vx_stream1.json", "{\"Common\":{\"ID\":1");
    const std::string copy = readFileBytes(configs() / "copy.json");
    state_.liveMainConfig.videoStreams = {"vx_stream0.json", "vx_stream2.json", "copy.json", "vx_stream1.json"};
    state_.storedMainConfig = state_.liveMainConfig;
    test::CapturedStderr err;
    loadStreams(state_);
    // B takes the ID its file name says; C, whose name says none, the lowest
    // free one with no file; the broken stream 1 keeps its own.
    EXPECT_EQ(state_.streams.collectIds(), (std::vector<std::int32_t>{0, 2, 3, 1}));
    EXPECT_EQ(state_.liveMainConfig.videoStreams,
              (std::vector<std::string>{"vx_stream0.json", "vx_stream2.json", "vx_stream3.json", "vx_stream1.json"}));
    config::MainConfig saved;
    config::MainConfigFolders folders;
    ASSERT_TRUE(config::loadConfig(dir_.path().string(), state_.ConfigDirectory, saved, folders));
    EXPECT_EQ(saved.videoStreams, state_.liveMainConfig.videoStreams);
    config::CameraConfig file;
    ASSERT_TRUE(config::loadCamera(config::cameraFilePath(state_.ConfigDirectory, 2), file, 300));
    EXPECT_EQ(file.common.ID, 2);
    EXPECT_EQ(file.common.videoName, "B");
    ASSERT_TRUE(config::loadCamera(config::cameraFilePath(state_.ConfigDirectory, 3), file, 300));
    EXPECT_EQ(file.common.ID, 3);
    EXPECT_EQ(file.common.videoName, "C");
    EXPECT_EQ(readFileBytes(configs() / "copy.json"), copy) << "the copy itself is left as it is";
    EXPECT_EQ(state_.streams.nextFreeId(), 4);
    const std::vector<std::string> log = logTexts(logFile());
    EXPECT_NE(std::find(log.begin(), log.end(),
                        "[WARNING]LoadCamera copy.json ID 0 is taken by another stream, loaded as vx_stream3.json "
                        "with ID 3"),
              log.end());
}

TEST_F(StartupStreams, RecognitionConfigMessageOnlyWhenItCantBeRead)
{
    state_.recognitionConfig.port = 1;
    loadRecognitionConfigStep(state_, hooks_);
    EXPECT_TRUE(messages_.empty());
    EXPECT_TRUE(fs::exists(configs() / "vx_recog_config_srv.json")) << "the defaults are written";
    EXPECT_EQ(state_.recognitionDialogCopy.port, 1);

    writeFileBytes(configs() / "vx_recog_config_srv.json", "{\"port\":4444,\"minPlateWidth\":");
    test::CapturedStderr err;
    loadRecognitionConfigStep(state_, hooks_);
    ASSERT_EQ(messages_.size(), 1u);
    EXPECT_EQ(messages_[0], "Сообщение|Конфигурационный файл для глобальных настроек распознавания не может быть "
                            "загружен! Система не будет работать правильно!");
    EXPECT_EQ(logTexts(logFile()),
              (std::vector<std::string>{"[TRACE]loadRecogGlobal ok!", "[ERROR]loadRecogGlobal error!"}));
}

TEST_F(StartupStreams, SamplesAndMessengersWithTheDialogCopies)
{
    config::WhiteListTable& lists = config::whiteListTable();
    lists.lists.resize(2);
    lists.lookups.resize(2);
    loadReceiverSamplesStep(state_);
    EXPECT_EQ(lists.lists.size(), 2u) << "no samples file: the lists stay";
    writeFileBytes(configs() / "receiversamples.json", "{\"templates\":[{\"name\":\"Gate\"}]}");
    state_.receiverSamples.clear();
    loadReceiverSamplesStep(state_);
    EXPECT_TRUE(lists.lists.empty());
    ASSERT_EQ(state_.receiverSamples.size(), 2u);
    EXPECT_EQ(state_.receiverSamples[1].name, "Gate");

    // An old messenger file takes the control service's port.
    writeFileBytes(configs() / "vx_mess_config.json", "{\"channels\":[{\"name\":\"bot\"}]}");
    state_.controlConfig.port = 1400;
    loadMessengersStep(state_);
    EXPECT_EQ(state_.messengersConfig.port, 1400);
    EXPECT_TRUE(state_.messengersConfig.on);
    EXPECT_EQ(state_.messengersDialogCopy.port, 1400);
    EXPECT_EQ(state_.messengersDialogCopy.channels[0].name, "bot");
}

} // namespace
} // namespace vx::core
