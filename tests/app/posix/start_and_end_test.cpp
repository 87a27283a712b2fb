// The manager started and ended with no operator action in between (ended
// by SIGTERM, which posts the same teardown as the menu's "Выход"): every
// config file stays byte for byte as it was, and an end request ends it
// also while a message box of the start is open.
#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <algorithm>
#include <map>
#include <regex>
#include <sstream>
#include <thread>

#include "support/posix/caught_signal.h"
#include "support/captured_stderr.h"
#include "support/installation.h"

using namespace vx::test;

namespace {

namespace fs = std::filesystem;

// Every file below the configs folder, by its path there, with its bytes.
std::map<std::string, std::string> configSnapshot(const fs::path& configs)
{
    std::map<std::string, std::string> files;
    for (const auto& entry : fs::recursive_directory_iterator(configs))
        if (entry.is_regular_file())
            files[fs::relative(entry.path(), configs).string()] = readFileBytes(entry.path());
    return files;
}

bool logHas(const fs::path& file, const std::string& text)
{
    for (const std::string& line : logTexts(file))
        if (line.find(text) != std::string::npos) return true;
    return false;
}

// A main config as saveConfig writes it, with the window placed.
std::string mainConfigText(const std::string& logs, const std::string& base)
{
    return "{\n\t\"name\":\"MainConfig\",\n\t\"version\":1,\n\t\"systemLogPath\":\"" + logs +
           "\",\n\t\"systemLevel\":0,\n\t\"recogLogPath\":\"" + logs +
           "\",\n\t\"recogFormat\":\"{datetime} number: {plate}, direction: {direction}\",\n"
           "\t\"dataTimeFormat\":\"Y-m-d H:M:S\",\n\t\"reportsPath\":\"" + base + "/reports\",\n\t\"videoPath\":\"" +
           base + "/videos\",\n\t\"saveImage\":false,\n\t\"sizeImage\":0,\n\t\"timeLife\":0,\n\t\"videoChunk\":300,\n"
           "\t\"maxSizeVideoDirectoryMb\":100,\n\t\"divideLogRecog\":0,\n\t\"autoRunManager\":false,\n"
           "\t\"startStatus\":false,\n\t\"globalRestart\":false,\n\t\"xWindow\":40,\n\t\"yWindow\":30,\n"
           "\t\"wWindow\":1000,\n\t\"hWindow\":760,\n\t\"display\":0,\n\t\"perfLog\":0,\n"
           "\t\"videoStreams\":[\n\t],\n\t\"autoRunStreams\":[\n\t]\n}";
}

class StartAndEnd : public ::testing::Test {
protected:
    fs::path logFile() const { return install_.logs() / "VexlaneLog.txt"; }

    // Starts the manager, waits until `ready` holds, lets it stand for
    // `standMs`, asks it to end and returns its exit code (-1: it didn't end
    // within ten seconds).
    int runUntil(const std::function<bool()>& ready, int standMs)
    {
        auto manager = install_.startManager();
        if (!manager)
            return -2;
        EXPECT_TRUE(waitFor(ready, 20000));
        std::this_thread::sleep_for(std::chrono::milliseconds(standMs));
        EXPECT_TRUE(waitUntilCaught(manager->pid(), SIGTERM, 10000));
        manager->kill(SIGTERM);
        return manager->waitExit(10000).value_or(-1);
    }

    ScopedEnv platform_{"QT_QPA_PLATFORM", "offscreen"};
    RuntimeSandbox runtime_;
    // Blanks and Cyrillic letters in the path reach the files unchanged.
    Installation install_{"Распознавание номеров"};
};

// The first run writes the files that are missing and a log from "Start"
// to "Close"; the second archives that log and rewrites no config file.
TEST_F(StartAndEnd, WritesWhatIsMissingArchivesTheLogAndLeavesEveryConfigByteForByte)
{
    const std::string mainText = mainConfigText(install_.logs().string(), install_.folder().string());
    writeFileBytes(install_.configs() / "vx_main_config.json", mainText);
    ASSERT_EQ(runUntil([&] { return logHas(logFile(), "OnCreate ok!"); }, 300), 0);
    const std::string first = readFileBytes(logFile());
    const auto lines = logTexts(logFile());
    ASSERT_GE(lines.size(), 3u);
    EXPECT_EQ(lines[0], "Start");
    EXPECT_TRUE(std::regex_match(lines[1], std::regex(R"(\d+\.\d+\.\d+\.\d+)"))) << lines[1];
    EXPECT_EQ(lines.back(), "Close");
    EXPECT_EQ(readFileBytes(install_.configs() / "vx_control_config.json").rfind("{\n\t\"name\":\"ControlSrvConfig\",\n", 0),
              0u);
    EXPECT_EQ(readFileBytes(install_.configs() / "vx_main_config.json"), mainText);
    const auto before = configSnapshot(install_.configs());
    ASSERT_GE(before.size(), 4u);

    // Well past the end of any settling of the window after its first show.
    ASSERT_EQ(runUntil([&] { return readFileBytes(logFile()) != first && logHas(logFile(), "OnCreate ok!"); }, 1500),
              0);
    const auto after = configSnapshot(install_.configs());
    for (const auto& [name, bytes] : before) {
        ASSERT_TRUE(after.count(name)) << name << " is gone";
        EXPECT_EQ(after.at(name), bytes) << name << " was rewritten";
    }
    for (const auto& [name, bytes] : after)
        EXPECT_TRUE(before.count(name)) << name << " was made";
    std::vector<fs::path> kept;
    for (const auto& entry : fs::directory_iterator(install_.logs() / "systemlogsarj"))
        kept.push_back(entry.path());
    ASSERT_EQ(kept.size(), 1u);
    EXPECT_EQ(readFileBytes(kept[0]), first);
    const auto second = logTexts(logFile());
    EXPECT_EQ(std::count(second.begin(), second.end(), "Start"), 1);
    EXPECT_EQ(second.back(), "Close");
}

TEST_F(StartAndEnd, AnEndRequestEndsItWhileAStartMessageIsOpen)
{
    // A main config that can't be read: its message is open, and no log yet.
    writeFileBytes(install_.configs() / "vx_main_config.json", "{\"systemLogPath\":");
    EXPECT_EQ(runUntil([] { return true; }, 1500), 0);

    // A recognition config that can't be read: the log is open by then and
    // ends with the teardown's line.
    writeFileBytes(install_.configs() / "vx_main_config.json",
                   mainConfigText(install_.logs().string(), install_.folder().string()));
    writeFileBytes(install_.configs() / "vx_recog_config_srv.json", "{\"name\":");
    EXPECT_EQ(runUntil([&] { return logHas(logFile(), "loadRecogGlobal error!"); }, 500), 0);
    const auto lines = logTexts(logFile());
    ASSERT_FALSE(lines.empty());
    EXPECT_EQ(lines.back(), "Close");
}

} // namespace
