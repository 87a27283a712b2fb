// The crash paths in a real process: the helper installs the capture and
// dies as asked; the dump, the texts and the exit code are looked at here.
#include <gtest/gtest.h>

#include <regex>
#include <sstream>
#include <vector>

#include "support/captured_stderr.h"
#include "support/child_process.h"
#include "support/temp_dir.h"

namespace {

using vx::test::ChildProcess;
using vx::test::readFileBytes;
using vx::test::TempDir;

struct Crash {
    std::optional<int> exitCode;
    std::string texts;   // the log or the redirected standard error
    std::string dump;
    bool dumpExists = false;
};

class CrashCapture : public ::testing::Test {
protected:
    TempDir base;
    std::filesystem::path dump() const { return base.path() / "dumps" / "VexlaneDump.dmp"; }
    std::filesystem::path texts() const { return base.path() / "texts.txt"; }

    Crash crash(const std::string& how, const std::string& target = "log")
    {
        Crash result;
        auto child = ChildProcess::start(vx::test::testProgramPath("crash_child"),
                                         {base.path().string(), how, texts().string(), target});
        EXPECT_TRUE(child);
        if (!child)
            return result;
        result.exitCode = child->waitExit(20000);
        result.texts = readFileBytes(texts());
        result.dumpExists = std::filesystem::exists(dump());
        result.dump = readFileBytes(dump());
        return result;
    }

    void makeDumpFolder() { std::filesystem::create_directories(base.path() / "dumps"); }
};

std::vector<std::string> linesOf(const std::string& text)
{
    std::vector<std::string> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);)
        lines.push_back(line);
    return lines;
}

// The log's standard-error form: "[stamp] text" with CR LF.
const std::string stampPattern = R"(\[\d{4}-\d\d-\d\d \d\d:\d\d:\d\d\] )";

void expectLogTail(const std::string& log, const std::vector<std::string>& texts)
{
    std::string pattern = R"(\[\d{4}-\d\d-\d\d \d\d:\d\d:\d\d\]before the crash\r\n)";
    for (const std::string& text : texts)
        pattern += stampPattern + text + "\r\n";
    EXPECT_TRUE(std::regex_search(log, std::regex(pattern + "$"))) << log;
}

} // namespace

TEST_F(CrashCapture, SegfaultLeavesTheDumpTheTextsAndExitCodeOne)
{
    makeDumpFolder();
    const Crash c = crash("segv");
    EXPECT_EQ(c.exitCode, 1);
    ASSERT_TRUE(c.dumpExists);
    const auto lines = linesOf(c.dump);
    ASSERT_GE(lines.size(), 8u);
    EXPECT_EQ(lines[0], "Vexlane crash report");
    EXPECT_EQ(lines[1], "Reason: signal 11 (SIGSEGV), code 1, address 0x0");
    EXPECT_TRUE(lines[2].starts_with("Process: "));
    // A backtrace of the faulting thread, then the memory map with the
    // helper's own executable in it.
    EXPECT_NE(c.dump.find("Backtrace:\n"), std::string::npos);
    EXPECT_NE(c.dump.find("crash_child("), std::string::npos) << c.dump;
    const auto map = c.dump.find("Memory map:\n");
    ASSERT_NE(map, std::string::npos);
    EXPECT_NE(c.dump.find("/crash_child\n", map), std::string::npos);
    EXPECT_NE(c.dump.find("[stack]", map), std::string::npos);
    expectLogTail(c.texts, {"Signal 11 received!", R"(Creating dump without exception context \(terminate handler\))"});
}

TEST_F(CrashCapture, AbortAndTerminate)
{
    makeDumpFolder();
    {
        const Crash c = crash("abort");
        EXPECT_EQ(c.exitCode, 1);
        // The abort signal carries no address.
        EXPECT_EQ(linesOf(c.dump).at(1).rfind("Reason: signal 6 (SIGABRT), code ", 0), 0u) << c.dump;
        EXPECT_EQ(c.dump.find("address"), std::string::npos);
        expectLogTail(c.texts, {"Signal 6 received!", R"(Creating dump without exception context \(terminate handler\))"});
    }
    {
        // A second crash overwrites the first dump.
        const Crash c = crash("terminate");
        EXPECT_EQ(c.exitCode, 1);
        const auto lines = linesOf(c.dump);
        ASSERT_GE(lines.size(), 3u);
        EXPECT_EQ(lines[0], "Vexlane crash report");
        EXPECT_EQ(lines[1], "Reason: terminate handler");
        EXPECT_NE(lines[2].find("nobody catches this"), std::string::npos) << lines[2];
        EXPECT_EQ(c.dump.find("SIGABRT"), std::string::npos);
        expectLogTail(c.texts, {"Terminate handler called! nullptr dump",
                                R"(Creating dump without exception context \(terminate handler\))"});
    }
}

TEST_F(CrashCapture, CrashFromASecondThread)
{
    makeDumpFolder();
    const Crash c = crash("thread-segv");
    EXPECT_EQ(c.exitCode, 1);
    const auto lines = linesOf(c.dump);
    ASSERT_GE(lines.size(), 4u);
    EXPECT_EQ(lines[1], "Reason: signal 11 (SIGSEGV), code 1, address 0x0");
    // The report names the faulting thread, not the main one.
    EXPECT_NE(lines[2].substr(9), lines[3].substr(8)) << lines[2] << " / " << lines[3];
    expectLogTail(c.texts, {"Signal 11 received!", R"(Creating dump without exception context \(terminate handler\))"});
}

TEST_F(CrashCapture, MissingDumpFolderGivesTheErrorTextAndStillExitCodeOne)
{
    const Crash c = crash("segv", "stderr");
    EXPECT_EQ(c.exitCode, 1);
    EXPECT_FALSE(c.dumpExists);
    EXPECT_FALSE(std::filesystem::exists(base.path() / "dumps"));
    // Before the system log exists the texts are plain lines of standard error.
    EXPECT_EQ(c.texts, "Signal 11 received!\n"
                       "Creating dump without exception context (terminate handler)\n"
                       "Creating dump-file error: " + dump().string() + "\n");
}

TEST_F(CrashCapture, NoCrashNoDump)
{
    makeDumpFolder();
    const Crash c = crash("none");
    EXPECT_EQ(c.exitCode, 0);
    EXPECT_FALSE(c.dumpExists);
}
