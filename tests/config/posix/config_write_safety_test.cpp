// A config file is never left torn or unreadable: a failed write keeps the old
// file (and the main config's .tmp), a text its reader can't take back is not
// written at all, and a writer killed at any moment leaves whole files.
#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <functional>
#include <map>
#include <random>
#include <thread>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "helpers/config_write_records.h"
#include "support/captured_stderr.h"
#include "support/child_process.h"
#include "support/temp_dir.h"

namespace vx::config {
namespace {

using test::readFileBytes;

class ConfigWriteSafety : public ::testing::Test {
protected:
    void SetUp() override
    {
        test::CapturedStderr quiet;   // the first save's "Failed to copy" line
        first_ = test::configWriteRecords(0);
        // Twice, so the main config has its .tmp.
        ASSERT_TRUE(test::writeConfigRecords(folder(), first_));
        ASSERT_TRUE(test::writeConfigRecords(folder(), first_));
    }
    std::string folder() const { return folder_.path().string(); }
    std::filesystem::path file(const std::string& name) const { return folder_.path() / name; }
    // Every file of the folder, name -> bytes.
    std::map<std::string, std::string> snapshot() const
    {
        std::map<std::string, std::string> files;
        for (const auto& entry : std::filesystem::directory_iterator(folder_.path()))
            files[entry.path().filename().string()] = readFileBytes(entry.path());
        return files;
    }

    test::RuntimeSandbox runtime_;
    test::TempDir folder_;
    test::ConfigWriteRecords first_;
};

// Runs `write` in a child whose files may not grow past `limit` bytes
// (SIGXFSZ ignored, so the write fails with EFBIG); its exit code is 0 when
// `write` returned false.
int exitCodeUnderSizeLimit(rlim_t limit, const std::function<bool()>& write)
{
    const pid_t pid = ::fork();
    if (pid == 0) {
        ::signal(SIGXFSZ, SIG_IGN);
        const rlimit small{limit, limit};
        ::setrlimit(RLIMIT_FSIZE, &small);
        test::CapturedStderr quiet;
        ::_exit(write() ? 1 : 0);
    }
    int status = -1;
    ::waitpid(pid, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 100 + WTERMSIG(status);
}

TEST_F(ConfigWriteSafety, FailedWriteKeepsTheFileAndItsSafetyCopy)
{
    const auto before = snapshot();
    test::ConfigWriteRecords second = test::configWriteRecords(1);
    // Smaller than every file: nothing can be written whole.
    EXPECT_EQ(exitCodeUnderSizeLimit(60, [&] { return saveConfig(folder(), second.main, {7}, {true}); }), 0);
    EXPECT_EQ(exitCodeUnderSizeLimit(60, [&] {
                  return saveCamera(cameraFilePath(folder(), test::loopStreamId), second.camera, 1, 2);
              }), 0);
    EXPECT_EQ(exitCodeUnderSizeLimit(60, [&] { return saveMessengers(folder(), second.messengers); }), 0);
    EXPECT_EQ(snapshot(), before) << "a file changed, or a temporary file was left";
}

// Fields written without escaping, as their formats say: a `"` in one would
// make the file unreadable for its reader.
TEST_F(ConfigWriteSafety, TextItsReaderCantTakeIsNotWritten)
{
    const auto before = snapshot();
    const std::vector<std::pair<const char*, std::function<bool()>>> writers = {
        {"main config recogFormat", [&] {
             MainConfig c = first_.main;
             c.recogFormat = "say \"hi\"";
             return saveConfig(folder(), c, {7}, {true});
         }},
        {"camera videoName", [&] {
             CameraConfig c = first_.camera;
             c.common.videoName = "gate \"1\"";
             return saveCamera(cameraFilePath(folder(), test::loopStreamId), c, 1, 2);
         }},
        {"messenger name", [&] {
             MessengersConfig c = first_.messengers;
             c.channels[3].name = "a\"b";
             return saveMessengers(folder(), c);
         }},
    };
    for (const auto& [what, write] : writers) {
        test::CapturedStderr err;
        EXPECT_FALSE(write()) << what;
        EXPECT_NE(err.text().find("not written"), std::string::npos) << what << ": " << err.text();
    }
    EXPECT_EQ(snapshot(), before);
}

TEST_F(ConfigWriteSafety, WriterKilledAtAnyMomentLeavesWholeFiles)
{
    const auto a = test::configWriteTexts(0);
    const auto b = test::configWriteTexts(1);
    std::mt19937 random(20261123);
    std::uniform_int_distribution<int> delayUs(0, 12000);
    int roundsWithSecond = 0;
    for (int round = 0; round < 200; ++round) {
        auto child = test::ChildProcess::start(test::testProgramPath("config_write_loop"), {folder()});
        ASSERT_TRUE(child);
        ASSERT_EQ(child->readLine(20000), "writing");
        std::this_thread::sleep_for(std::chrono::microseconds(delayUs(random)));
        child->kill(SIGKILL);
        ASSERT_TRUE(child->waitExit(20000)) << "round " << round;
        const auto files = snapshot();
        for (std::size_t i = 0; i < a.size(); ++i) {
            const std::string& text = files.at(a[i].first);
            ASSERT_TRUE(text == a[i].second || text == b[i].second) << a[i].first << " torn in round " << round;
            ASSERT_TRUE(nlohmann::json::accept(text)) << a[i].first;
            if (i == 0) {
                const std::string& copy = files.at(a[0].first + ".tmp");
                ASSERT_TRUE(copy == a[0].second || copy == b[0].second) << ".tmp torn in round " << round;
                roundsWithSecond += text == b[0].second;
            }
        }
    }
    EXPECT_GT(roundsWithSecond, 0) << "the loop never got a write done";
}

} // namespace
} // namespace vx::config
