#include "maintenance/log_buffer.h"

#include <ctime>
#include <ostream>
#include <regex>
#include <sstream>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "maintenance/system_log.h"
#include "support/captured_stderr.h"
#include "support/temp_dir.h"

namespace vx::maintenance {
namespace {

using test::readFileBytes;
using test::writeFileBytes;

// 2024-05-01 10:20:30 in UTC.
constexpr std::time_t fixedTime = 1714558830;
const std::string stamp = "[2024-05-01 10:20:30]";

class LogFile : public ::testing::Test {
protected:
    LogFile() { tzset(); }
    ~LogFile() override
    {
        tz_.reset();
        tzset();
    }
    std::filesystem::path path() const { return dir_.path() / "VexlaneLog.txt"; }
    static LogBuffer::Clock clock()
    {
        return [] { return fixedTime; };
    }

    std::unique_ptr<test::ScopedEnv> tz_ = std::make_unique<test::ScopedEnv>("TZ", "UTC");
    test::TempDir dir_;
};

TEST_F(LogFile, TheFourModes)
{
    struct Case {
        LogMode mode;
        std::string expected;   // the file after open, one line, close, on top of "old\r\n"
    };
    const Case cases[] = {
        {LogMode::appendStartEnd, "old\r\n" + stamp + "Start\r\n" + stamp + "x\r\n" + stamp + "End\r\n"},
        {LogMode::archiveTruncate, stamp + "Start\r\n" + stamp + "x\r\n"},
        {LogMode::appendQuiet, "old\r\n" + stamp + "x\r\n"},
        {LogMode::appendStart, "old\r\n" + stamp + "Start\r\n" + stamp + "x\r\n"},
    };
    for (const Case& c : cases) {
        writeFileBytes(path(), "old\r\n");
        {
            LogBuffer log(path(), c.mode, clock());
            log.writeLine("x");
        }
        EXPECT_EQ(readFileBytes(path()), c.expected) << static_cast<int>(c.mode);
    }
}

TEST_F(LogFile, TheThresholdFiltersLevelledLinesOnly)
{
    {
        LogBuffer log(path(), LogMode::appendQuiet, clock());
        EXPECT_EQ(log.minLevel(), 3);
        log.log(logInfo, "dropped at 3");
        log.log(logWarning, "kept at 3");
        log.setMinLevel(4);
        log.log(logWarning, "dropped at 4");
        log.log(logError, "kept at 4");
        log.setMinLevel(clampLogLevel(9));
        log.log(logError, "dropped at 5");
        log.log(logCritical, "kept at 5");
        log.writeLine("never filtered");
        log.log(6, "no name");
        log.setMinLevel(clampLogLevel(-1));
        log.log(logTrace, "kept at 0");
        log.log(-1, "below all");
    }
    EXPECT_EQ(readFileBytes(path()), stamp + "[WARNING]kept at 3\r\n" + stamp + "[ERROR]kept at 4\r\n" + stamp +
                                         "[CRITICAL]kept at 5\r\n" + stamp + "never filtered\r\n" + stamp +
                                         "[]no name\r\n" + stamp + "[TRACE]kept at 0\r\n");
}

TEST_F(LogFile, StandardErrorPathPrefixesEachLineOnce)
{
    {
        LogBuffer log(path(), LogMode::appendQuiet, clock());
        std::ostream err(&log);
        err << "first " << "piece";
        err << " end\n";
        err << "one\ntwo\n";
        err.put('c');
        err.flush();
        err << "no line feed";
        log.writeLine("behind it");
        err << "";   // nothing at all
    }
    EXPECT_EQ(readFileBytes(path()), stamp + " first piece end\r\n" + stamp + " one\r\n" + stamp + " two\r\n" +
                                         stamp + " cno line feed" + stamp + "behind it\r\n");
}

TEST_F(LogFile, AFileThatWontOpenIsReportedAndWritesGoNowhere)
{
    test::CapturedStderr err;
    LogBuffer log(dir_.path() / "missing" / "VexlaneLog.txt", LogMode::archiveTruncate, clock());
    EXPECT_EQ(err.text(), "Failed to open log file!\n");
    EXPECT_FALSE(log.isOpen());
    log.writeLine("lost");
    log.log(logCritical, "lost");
    std::ostream(&log) << "lost\n";
    EXPECT_FALSE(std::filesystem::exists(dir_.path() / "missing"));
}

TEST_F(LogFile, LinesFromSeveralThreadsNeverInterleave)
{
    constexpr int threads = 6;
    constexpr int lines = 300;
    {
        LogBuffer log(path(), LogMode::appendQuiet);
        log.setMinLevel(0);
        std::vector<std::thread> workers;
        for (int t = 0; t < threads; ++t)
            workers.emplace_back([&log, t] {
                const std::string text(40 + t * 7, static_cast<char>('a' + t));
                for (int i = 0; i < lines; ++i) {
                    if (i % 2)
                        log.writeLine(text);
                    else
                        log.log(t % 6, text);
                }
            });
        for (auto& w : workers)
            w.join();
    }
    std::istringstream in(readFileBytes(path()));
    const std::regex shape(R"(\[\d{4}-\d\d-\d\d \d\d:\d\d:\d\d\](\[[A-Z]+\])?([a-f])\2*\r)");
    std::string line;
    int count = 0;
    while (std::getline(in, line)) {
        ++count;
        ASSERT_TRUE(std::regex_match(line, shape)) << line;
    }
    EXPECT_EQ(count, threads * lines);
}

// The process-wide logs and the call-site idiom.
class SystemLog : public LogFile {
protected:
    SystemLog() : previous_(std::cerr.rdbuf()) {}
    ~SystemLog() override
    {
        setSystemLog(nullptr);
        setPerfLog(nullptr);
        std::cerr.rdbuf(previous_);
    }
    std::streambuf* previous_;
};

TEST_F(SystemLog, CloseIsTheLastLineAndStandardErrorIsLetGo)
{
    setSystemLog(std::make_unique<LogBuffer>(path(), LogMode::archiveTruncate, clock()));
    setPerfLog(std::make_unique<LogBuffer>(dir_.path() / "perf.txt", LogMode::appendStart, clock()));
    attachToStandardError(*systemLog());
    std::cerr << "through standard error" << std::endl;
    perfLog()->writeLine("25");
    closeLogs();
    EXPECT_EQ(systemLog(), nullptr);
    EXPECT_EQ(perfLog(), nullptr);
    std::cerr << "after the close" << std::endl;   // must not reach a destroyed buffer
    std::cerr.clear();
    EXPECT_EQ(readFileBytes(path()), stamp + "Start\r\n" + stamp + " through standard error\r\n" + stamp + "Close\r\n");
    EXPECT_EQ(readFileBytes(dir_.path() / "perf.txt"), stamp + "Start\r\n" + stamp + "25\r\n");
    closeLogs();   // nothing left: every step is skipped
}

} // namespace
} // namespace vx::maintenance
