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
        std::filesystem::remove(dump());   // left by an earlier crash of the test
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

// Each path of the handler: exit code 1, the report in the fixed file with
// its reason, and the texts at the end of the log. The report's further
// lines (the backtrace, the memory map) are this platform's own.
TEST_F(CrashCapture, EachPathLeavesTheDumpTheTextsAndExitCodeOne)
{
    struct Case {
        const char* how;
        const char* reason;
        const char* text;
    };
    const Case cases[] = {
        {"segv", "Reason: signal 11 (SIGSEGV), code 1, address 0x0", "Signal 11 received!"},
        {"thread-segv", "Reason: signal 11 (SIGSEGV), code 1, address 0x0", "Signal 11 received!"},
        {"abort", "Reason: signal 6 (SIGABRT), code ", "Signal 6 received!"},
        {"terminate", "Reason: terminate handler", "Terminate handler called! nullptr dump"},
    };
    makeDumpFolder();
    for (const Case& c : cases) {
        SCOPED_TRACE(c.how);
        const Crash crashed = crash(c.how);
        EXPECT_EQ(crashed.exitCode, 1);
        const auto lines = linesOf(crashed.dump);
        ASSERT_GE(lines.size(), 2u);
        EXPECT_EQ(lines[0], "Vexlane crash report");
        EXPECT_EQ(lines[1].rfind(c.reason, 0), 0u) << lines[1];
        expectLogTail(crashed.texts, {c.text, R"(Creating dump without exception context \(terminate handler\))"});
    }
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
