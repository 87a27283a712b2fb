// The manager as a newcomer starts it: its executable copied into an
// installation folder of its own, run headless, ended by the operator's
// request (SIGTERM), which posts the same teardown as the menu's "Выход".
#include <algorithm>
#include <chrono>
#include <csignal>
#include <regex>
#include <sstream>
#include <thread>

#include <gtest/gtest.h>

#include "support/posix/caught_signal.h"
#include "support/captured_stderr.h"
#include "support/installation.h"

namespace vx::test {
namespace {

namespace fs = std::filesystem;

std::vector<std::string> logLines(const fs::path& file)
{
    std::vector<std::string> lines;
    std::istringstream in(readFileBytes(file));
    for (std::string line; std::getline(in, line);)
        lines.push_back(line);
    return lines;
}

const std::regex stamped(R"(\[\d{4}-\d\d-\d\d \d\d:\d\d:\d\d\](.*)\r)");

std::string afterStamp(const std::string& line)
{
    std::smatch match;
    return std::regex_match(line, match, stamped) ? match[1].str() : "<not a log line: " + line + ">";
}

class ManagerStart : public ::testing::Test {
protected:
    fs::path logFile() const { return install_.logs() / "VexlaneLog.txt"; }

    // Starts the manager, waits for its files and the first two log lines of
    // this run (an earlier run's log is still there until the new run
    // archives it), then asks it to end; returns its exit code (-1 when it
    // didn't end).
    int runOnce()
    {
        const std::string earlier = fs::exists(logFile()) ? readFileBytes(logFile()) : std::string();
        auto manager = install_.startManager();
        if (!manager)
            return -2;
        const bool started = waitFor(
            [&] {
                return fs::exists(install_.configs() / "vx_main_config.json") &&
                       fs::exists(install_.configs() / "vx_control_config.json") &&
                       readFileBytes(logFile()) != earlier && logLines(logFile()).size() >= 2;
            },
            15000);
        EXPECT_TRUE(started);
        // Past the start: every step of the create handler has run.
        std::this_thread::sleep_for(std::chrono::milliseconds(300));
        EXPECT_TRUE(waitUntilCaught(manager->pid(), SIGTERM, 10000));
        manager->kill(SIGTERM);
        return manager->waitExit(15000).value_or(-1);
    }

    ScopedEnv platform_{"QT_QPA_PLATFORM", "offscreen"};
    RuntimeSandbox runtime_;
    // Blanks and Cyrillic letters in the path reach the files unchanged.
    Installation install_{"Распознавание номеров"};
};

TEST_F(ManagerStart, WritesTheConfigsAndALogFromStartToClose)
{
    ASSERT_EQ(runOnce(), 0);
    const auto lines = logLines(logFile());
    ASSERT_GE(lines.size(), 3u);
    EXPECT_EQ(afterStamp(lines[0]), "Start");
    EXPECT_TRUE(std::regex_match(afterStamp(lines[1]), std::regex(R"(\d+\.\d+\.\d+\.\d+)"))) << lines[1];
    EXPECT_EQ(afterStamp(lines.back()), "Close");
    const std::string control = readFileBytes(install_.configs() / "vx_control_config.json");
    EXPECT_EQ(control.rfind("{\n\t\"name\":\"ControlSrvConfig\",\n", 0), 0u);
    const std::string main = readFileBytes(install_.configs() / "vx_main_config.json");
    EXPECT_NE(main.find("\t\"systemLogPath\":\"" + install_.logs().string() + "\",\n"), std::string::npos)
        << main;
}

TEST_F(ManagerStart, ASecondStartArchivesTheFirstRunsLog)
{
    ASSERT_EQ(runOnce(), 0);
    const std::string first = readFileBytes(logFile());
    ASSERT_EQ(runOnce(), 0);
    const fs::path archive = install_.logs() / "systemlogsarj";
    ASSERT_TRUE(fs::is_directory(archive));
    std::vector<fs::path> kept;
    for (const auto& entry : fs::directory_iterator(archive))
        kept.push_back(entry.path());
    ASSERT_EQ(kept.size(), 1u);
    EXPECT_EQ(readFileBytes(kept[0]), first);
    // The main file holds the second run alone.
    const auto lines = logLines(logFile());
    EXPECT_EQ(afterStamp(lines.front()), "Start");
    EXPECT_EQ(std::count_if(lines.begin(), lines.end(), [](const std::string& l) { return afterStamp(l) == "Start"; }),
              1);
    EXPECT_EQ(afterStamp(lines.back()), "Close");
}

} // namespace
} // namespace vx::test
