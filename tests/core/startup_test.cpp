#include "core/startup.h"

#include <sstream>
#include <vector>

#include <gtest/gtest.h>

#include "config/text_codec.h"
#include "maintenance/system_log.h"
#include "support/captured_stderr.h"
#include "support/temp_dir.h"
#include "support/text_file.h"

namespace vx::core {
namespace {

namespace fs = std::filesystem;
using test::readFileBytes;
using test::writeFileBytes;

const std::string minimalMainConfig = "{\"videoStreams\":[],\"autoRunStreams\":[]}";

// An installation folder of its own, with configs/ and logs/, and everything
// the create handler's steps tell the operator.
class Startup : public ::testing::Test {
protected:
    Startup() : previousErr_(std::cerr.rdbuf())
    {
        fs::create_directories(base() / "configs");
        fs::create_directories(base() / "logs");
        state_.baseDirectory = base();
        state_.versionText = "1.0.0.1";
        hooks_.showMessage = [this](const std::string& title, const std::string& text) {
            messages_.push_back(config::cp1251ToUtf8(title) + "|" + config::cp1251ToUtf8(text));
            logAtMessage_ = readFileBytes(base() / "logs" / "VexlaneLog.txt");
        };
        hooks_.postTeardown = [this] { ++teardowns_; };
        hooks_.setAutorunTick = [this](bool ticked) { ticks_.push_back(ticked); };
    }
    ~Startup() override
    {
        maintenance::closeLogs();
        std::cerr.rdbuf(previousErr_);
        std::cerr.clear();
    }

    fs::path base() const { return dir_.path(); }
    std::vector<std::string> logLines() const { return test::logTexts(base() / "logs" / "VexlaneLog.txt"); }
    // Steps 9 to 13 and 17, as the create handler runs them.
    bool runSteps()
    {
        if (!loadMainConfigStep(state_, hooks_))
            return false;
        openLogs(state_);
        setLogThreshold(state_);
        loadControlConfigStep(state_, hooks_);
        return true;
    }

    std::streambuf* previousErr_;
    test::RuntimeSandbox runtime_;
    test::TempDir dir_;
    AppState state_;
    StartupHooks hooks_;
    std::vector<std::string> messages_;
    std::string logAtMessage_;
    int teardowns_ = 0;
    std::vector<bool> ticks_;
};

TEST_F(Startup, AFirstStartWritesTheDefaultsAndOpensTheLog)
{
    test::CapturedStderr err;
    ASSERT_TRUE(runSteps());
    EXPECT_EQ(state_.ConfigDirectory, (base() / "configs").string());
    EXPECT_EQ(state_.liveMainConfig.systemLogPath, (base() / "logs").string());
    EXPECT_EQ(state_.liveMainConfig.videoPath, (base() / "videos").string());
    EXPECT_EQ(state_.mainConfigFolders.reportsPath, (base() / "reports").string());
    EXPECT_TRUE(fs::exists(base() / "configs" / "vx_main_config.json"));
    EXPECT_TRUE(fs::exists(base() / "configs" / "vx_control_config.json"));
    // Only the copy of a file that isn't there yet complains, before the log.
    EXPECT_EQ(err.text().rfind("Failed to copy main config file: ", 0), 0u) << err.text();
    EXPECT_TRUE(messages_.empty());
    EXPECT_EQ(teardowns_, 0);
    EXPECT_TRUE(ticks_.empty());
    EXPECT_EQ(state_.restartControl, 0);
    EXPECT_FALSE(fs::exists(base() / "logs" / "perf.txt"));
    // Level 3 keeps the trace lines out: only "Start" and the version.
    const auto lines = logLines();
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(lines[0], "Start");
    EXPECT_EQ(lines[1], "1.0.0.1");
    // Standard error now ends in the log.
    std::cerr << "[VX2S] later" << std::endl;
    EXPECT_EQ(logLines().back(), " [VX2S] later");
}

TEST_F(Startup, TheSavedSettingsSwitchTheWatchTheTickAndTheThreshold)
{
    writeFileBytes(base() / "configs" / "vx_main_config.json",
                   "{\"systemLogPath\":\"" + test::jsonPath(base() / "logs") +
                       "\",\"systemLevel\":0,\"globalRestart\":true,\"autoRunManager\":true,\"perfLog\":1,"
                       "\"videoStreams\":[],\"autoRunStreams\":[]}");
    ASSERT_TRUE(runSteps());
    EXPECT_EQ(state_.restartControl, 10);
    EXPECT_EQ(ticks_, std::vector<bool>{true});
    EXPECT_EQ(state_.liveMainConfig.systemLevel, 0);
    EXPECT_TRUE(state_.liveMainConfig.globalRestart);
    const auto lines = logLines();
    ASSERT_EQ(lines.size(), 4u);
    EXPECT_EQ(lines[2], "[TRACE]ConfigGlobal ok!");
    EXPECT_EQ(lines[3], "[TRACE]loadControlGlobal ok!");
    EXPECT_EQ(test::logTexts(base() / "logs" / "perf.txt").at(0), "Start");
}

TEST_F(Startup, ABrokenMainConfigStopsWithTheMessageAndAPostedTeardown)
{
    const std::string broken = "{\"systemLevel\":0,";
    writeFileBytes(base() / "configs" / "vx_main_config.json", broken);
    test::CapturedStderr err;
    EXPECT_FALSE(runSteps());
    EXPECT_EQ(err.text(), "[VX2S] loadConfig parse error at byte 18\n");
    ASSERT_EQ(messages_.size(), 1u);
    EXPECT_EQ(messages_[0],
              "Сообщение|Конфигурационный файл не может быть загружен! Система не будет работать правильно!"
              "Выйдите из программы и проверьте конфиг файл vx_main_config.json!"
              "Можете попробовать скопировать а него файл предыдущей версии vx_main_config.json.tmp!");
    EXPECT_EQ(teardowns_, 1);
    // Nothing of the existing file is overwritten; no log is opened.
    EXPECT_EQ(readFileBytes(base() / "configs" / "vx_main_config.json"), broken);
    EXPECT_FALSE(fs::exists(base() / "configs" / "vx_main_config.json.tmp"));
    EXPECT_FALSE(fs::exists(base() / "logs" / "VexlaneLog.txt"));
    EXPECT_EQ(maintenance::systemLog(), nullptr);
}

TEST_F(Startup, AControlConfigThatWontOpenIsLoggedThenShown)
{
    writeFileBytes(base() / "configs" / "vx_main_config.json", minimalMainConfig);
    ASSERT_TRUE(loadMainConfigStep(state_, hooks_));
    state_.liveMainConfig.systemLogPath = (base() / "logs").string();
    openLogs(state_);
    setLogThreshold(state_);
    state_.ConfigDirectory = (base() / "missing").string();
    loadControlConfigStep(state_, hooks_);
    ASSERT_EQ(messages_.size(), 1u);
    EXPECT_EQ(messages_[0], "Сообщение|Конфигурационный файл для глобальных настроек управления не может быть "
                            "загружен! Система не будет работать правильно!");
    // The log line is there before the box.
    EXPECT_NE(logAtMessage_.find("][ERROR]loadControlGlobal error!\r\n"), std::string::npos) << logAtMessage_;
}

TEST_F(Startup, ACorruptControlConfigGoesOnWithoutAMessage)
{
    writeFileBytes(base() / "configs" / "vx_main_config.json", minimalMainConfig);
    writeFileBytes(base() / "configs" / "vx_control_config.json", "{\"port\":7000,\"modeDB\":");
    state_.storedMainConfig.systemLevel = 0;
    state_.storedMainConfig.systemLogPath = (base() / "logs").string();
    ASSERT_TRUE(runSteps());
    EXPECT_TRUE(messages_.empty());
    EXPECT_EQ(state_.controlConfig.port, 1235);   // the parser failed before anything was taken
    const auto lines = logLines();
    ASSERT_GE(lines.size(), 2u);
    // The reader's complaint reaches the log through standard error.
    EXPECT_EQ(lines[lines.size() - 2], " [VX2S] loadControlGlobal parse error at byte 23");
    EXPECT_EQ(lines.back(), "[TRACE]loadControlGlobal ok!");
}

TEST_F(Startup, SaveMainConfigWritesTheLiveCopyWithTheTablesStreams)
{
    writeFileBytes(base() / "configs" / "vx_main_config.json", minimalMainConfig);
    ASSERT_TRUE(loadMainConfigStep(state_, hooks_));
    for (std::int32_t wanted : {3, 0, 7}) {
        std::int32_t id = wanted;
        ASSERT_FALSE(state_.streams.addStream({}, {}, {}, id, true));
    }
    bool planned = true;
    ASSERT_TRUE(state_.streams.togglePlanned(1, planned));
    state_.liveMainConfig.videoChunk = 42;
    test::CapturedStderr err;
    saveMainConfig(state_);
    EXPECT_EQ(state_.storedMainConfig.videoChunk, 42);
    EXPECT_EQ(state_.storedMainConfig.videoStreams,
              (std::vector<std::string>{"vx_stream3.json", "vx_stream0.json", "vx_stream7.json"}));
    EXPECT_EQ(state_.storedMainConfig.autoRunStreams, (std::vector<bool>{true, false, true}));
    // The live copy keeps its own lists until the caller copies back.
    EXPECT_TRUE(state_.liveMainConfig.videoStreams.empty());
    const std::string text = test::readText(base() / "configs" / "vx_main_config.json");
    EXPECT_NE(text.find("\t\"videoChunk\":42,\n"), std::string::npos);
    EXPECT_NE(text.find("\t\t\"vx_stream3.json\",\n\t\t\"vx_stream0.json\",\n\t\t\"vx_stream7.json\"\n"),
              std::string::npos);
    EXPECT_NE(text.find("\t\ttrue,\n\t\tfalse,\n\t\ttrue\n"), std::string::npos);
    EXPECT_EQ(readFileBytes(base() / "configs" / "vx_main_config.json.tmp"), minimalMainConfig);
}

} // namespace
} // namespace vx::core
