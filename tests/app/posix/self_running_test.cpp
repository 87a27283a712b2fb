// The manager running by itself on a temporary installation: the first tick's
// watch starts the three service stand-ins and two streams, the tiles get
// pictures, a service and a stream killed with SIGKILL come back through the
// watch, and what the manager started outlives it.
#include <gtest/gtest.h>

#include <signal.h>
#include <unistd.h>

#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "support/posix/caught_signal.h"
#include "support/captured_stderr.h"
#include "support/installation.h"
#include "supervision/service_test_support.h"

using namespace vx::test;
namespace fs = std::filesystem;

namespace {

std::string streamFile(int id, const std::string& name)
{
    const std::string video = std::string(VEXLANE_BIN_DIR) + "/demo_videos/gate_entry.avi";
    return "{\n\t\"Common\":{\n\t\t\"videoName\":\"" + name + "\",\n\t\t\"videoPath\":\"" + video +
           "\",\n\t\t\"fps\":5,\n\t\t\"autoRun\":true,\n\t\t\"ID\":" + std::to_string(id) +
           "\n\t},\n\t\"Recognition\":{\n\t},\n\t\"ControlReport\":{\n\t}\n}";
}

// Live processes (not zombies) whose command line names `folder` or whose
// working directory is it: everything the manager started for this test.
std::set<long> processesOf(const fs::path& folder)
{
    std::set<long> pids;
    std::error_code ec;
    for (const auto& entry : fs::directory_iterator("/proc", ec)) {
        const std::string name = entry.path().filename().string();
        if (name.find_first_not_of("0123456789") != std::string::npos)
            continue;
        const std::string stat = readFileBytes(entry.path() / "stat");
        const auto close = stat.rfind(')');
        if (close == std::string::npos || close + 2 >= stat.size() || stat[close + 2] == 'Z')
            continue;
        const std::string cmdline = readFileBytes(entry.path() / "cmdline");
        std::error_code linkError;
        const fs::path cwd = fs::read_symlink(entry.path() / "cwd", linkError);
        if (cmdline.find(folder.string()) != std::string::npos || (!linkError && cwd == folder))
            pids.insert(std::stol(name));
    }
    return pids;
}

// Whatever the test's manager started is ended with the test, also when an
// assertion leaves early.
struct EndAll {
    fs::path folder;
    ~EndAll()
    {
        for (long pid : processesOf(folder))
            ::kill(static_cast<pid_t>(pid), SIGKILL);
        waitFor([&] { return processesOf(folder).empty(); }, 5000);
    }
};

bool alive(long pid)
{
    const std::string stat = readFileBytes("/proc/" + std::to_string(pid) + "/stat");
    const auto close = stat.rfind(')');
    return close != std::string::npos && close + 2 < stat.size() && stat[close + 2] != 'Z';
}

} // namespace

TEST(SelfRunning, PicturesAndTheWatchBringBackWhatWasKilled)
{
    RuntimeSandbox sandbox;
    ScopedEnv headless("QT_QPA_PLATFORM", "offscreen");
    Installation install;
    const std::string logs = install.logs().string();
    const int base = 600000 + static_cast<int>(::getpid() % 10000) * 10;
    const std::string s1 = "vx_stream" + std::to_string(base) + ".json";
    const std::string s2 = "vx_stream" + std::to_string(base + 1) + ".json";
    writeFileBytes(install.configs() / "vx_main_config.json",
                   "{\"systemLogPath\":\"" + logs + "\",\"recogLogPath\":\"" + logs + "\",\"videoPath\":\"" +
                       (install.folder() / "videos").string() +
                       "\",\"systemLevel\":0,\"perfLog\":1,\"startStatus\":true,\"globalRestart\":true,"
                       "\"videoStreams\":[\"" + s1 + "\",\"" + s2 + "\"],\"autoRunStreams\":[true,true]}");
    writeFileBytes(install.configs() / s1, streamFile(base, "Gate" + std::to_string(base)));
    writeFileBytes(install.configs() / s2, streamFile(base + 1, "Yard" + std::to_string(base)));
    writeFileBytes(install.configs() / "vx_recog_config_srv.json", "{\"port\":" + std::to_string(freeLoopbackPort()) + ",\"plateTemplates\":[]}");
    writeFileBytes(install.configs() / "vx_control_config.json", "{\"port\":" + std::to_string(freeLoopbackPort()) + "}");
    writeFileBytes(install.configs() / "vx_mess_config.json",
                   "{\"port\":" + std::to_string(freeLoopbackPort()) + ",\"on\":1}");

    EndAll endAll{install.folder()};
    auto manager = install.startManager();
    ASSERT_TRUE(manager);
    const fs::path log = install.logs() / "VexlaneLog.txt";
    const fs::path inferenceLog = install.logs() / "vxInferenceLog.txt";

    // The watch finds services by image name across the machine: one of
    // another test may stand in for ours. Ours, when started, log here.
    const bool started = waitFor([&] { return countLines(log, "videoStart ID" + std::to_string(base + 1) + " ok!") > 0; },
                                 40000);
    EXPECT_TRUE(started) << readFileBytes(log);
    const bool ownInference = standInPid(inferenceLog) != 0;

    // The tiles hold pictures: both streams answer, two pictures a tick.
    const std::string picture = "CopyMes: getimage empty = false";
    EXPECT_TRUE(waitFor([&] { return countLines(log, picture) >= 6; }, 15000)) << readFileBytes(log);

    // Kill our recognition service (when it is ours) and the second stream.
    const std::set<long> before = processesOf(install.folder());
    long streamPid = 0;
    for (long pid : before)
        if (readFileBytes("/proc/" + std::to_string(pid) + "/cmdline").find(s2) != std::string::npos)
            streamPid = pid;
    ASSERT_NE(streamPid, 0);
    const long inferencePid = ownInference ? standInPid(inferenceLog) : 0;
    if (inferencePid)
        ::kill(static_cast<pid_t>(inferencePid), SIGKILL);
    ::kill(static_cast<pid_t>(streamPid), SIGKILL);

    // Back within the watch's time: each start blocks up to five seconds.
    const std::string restarted = "videoStart ID" + std::to_string(base + 1) + " ok!";
    EXPECT_TRUE(waitFor([&] { return countLines(log, restarted) >= 2; }, 30000)) << readFileBytes(log);
    if (inferencePid) {
        EXPECT_TRUE(waitFor([&] { return standInPid(inferenceLog) != inferencePid && alive(standInPid(inferenceLog)); },
                            20000));
        EXPECT_GE(countLines(log, "vxInference restarted 5 second ago!"), 1) << readFileBytes(log);
    }
    // The manager goes; what it started doesn't, so the test ends it all.
    std::set<long> ours = processesOf(install.folder());
    ours.erase(manager->pid());
    EXPECT_FALSE(ours.empty());
    EXPECT_TRUE(waitUntilCaught(manager->pid(), SIGTERM, 10000));
    manager->kill(SIGTERM);
    EXPECT_TRUE(manager->waitExit(10000));
    for (long pid : ours)
        EXPECT_TRUE(alive(pid)) << pid;
    for (long pid : processesOf(install.folder()))
        ::kill(static_cast<pid_t>(pid), SIGKILL);
    EXPECT_TRUE(waitFor([&] { return processesOf(install.folder()).empty(); }, 5000));
}
