// The start routines and workers against the real stand-ins of build/bin/,
// copied into a temporary installation with configs of its own on free
// loopback ports. Lookups see only that installation's processes, and every
// process a test started is ended when it finishes.
#include <gtest/gtest.h>

#include <fstream>
#include <thread>

#include "config/control_config.h"
#include "config/messenger_config.h"
#include "config/recognition_config.h"
#include "config/text_codec.h"
#include "supervision/service_test_support.h"
#include "supervision/service_launcher.h"
#include "supervision/service_requests.h"
#include "support/installation.h"
#include "support/posix/zombie_children.h"

namespace vx::supervision {
namespace {

using test::waitFor;
using test::zombieChildren;

class ServiceProcesses : public ::testing::Test {
protected:
    void SetUp() override
    {
        std::filesystem::create_directories(install.configs());
        std::filesystem::create_directories(install.logs());
        settings().baseDirectory = install.folder();
        settings().configDirectory = install.configs().string();
        settings().systemLogPath = install.logs().string();
        settings().recognitionPort = test::freeLoopbackPort();
        settings().controlPort = test::freeLoopbackPort();
        settings().mesPort = test::freeLoopbackPort();
        writeConfigs();
        const std::filesystem::path folder = install.folder();
        services->process.find = [folder](const std::string& name) { return test::findProcessIn(folder, name); };
        // The second of grace is real; the start watch is shortened.
        services->sleep = [](int ms) { std::this_thread::sleep_for(std::chrono::milliseconds(ms)); };
        services->startWatchMs = 800;
    }
    void TearDown() override
    {
        EXPECT_TRUE(test::endProcessesIn(install.folder(), {"vxInference", "vxControl", "vxMes"}));
        EXPECT_TRUE(waitFor([] { return zombieChildren() == 0; }, 3000));
    }
    ServiceSettings& settings() { return services.settings; }
    void writeConfigs()
    {
        config::RecognitionSrvConfig recognition;
        recognition.port = settings().recognitionPort;
        config::saveRecogGlobal(settings().configDirectory, recognition);
        config::ControlSrvConfig control;
        control.port = settings().controlPort;
        config::saveControlGlobal(settings().configDirectory, control);
        config::MessengersConfig mes;
        mes.port = settings().mesPort;
        config::saveMessengers(settings().configDirectory, mes);
    }
    long find(const std::string& name) const { return test::findProcessIn(install.folder(), name); }
    std::string serviceLog(const std::string& file) const { return test::readFileBytes(install.logs() / file); }
    std::string controlLog() const { return test::readFileBytes(install.folder() / "logs" / "vxControlLog.txt"); }

    test::RuntimeSandbox sandbox;
    test::Installation install;
    test::LogCapture log{0};
    test::TestServices services;
};

// One set of services walked through the polls, a stop and a restart, and a
// stop that the service ignores.
TEST_F(ServiceProcesses, PollsStopsAndRestarts)
{
    {
        test::ScopedEnv fps("VXINFERENCE_FPS", "31");
        test::ScopedEnv ignore("VXMES_IGNORE_STOP", "1");
        startInference(*services);
        startControl(*services);
        startMes(*services);
    }
    for (const char* name : {"vxInference", "vxControl", "vxMes"})
        EXPECT_TRUE(log.has(std::string("[INFO]") + name + " restarted 5 second ago!"));
    ThreadRequests(*services, "/FPS", false);
    threadRequestsToDirect(*services, "/CheckRun", false);
    threadRequestsToMes(*services, "/CheckRun", false);
    EXPECT_EQ(services.fpsRecognition, 31);
    EXPECT_EQ(services.statusControl, 0);
    EXPECT_EQ(services.statusMes, 0);
    threadRequestsToDirect(*services, "/HandSignal", false, 4, 1);
    // Each took its port from its file and noted what it got.
    EXPECT_TRUE(waitFor([&] { return controlLog().find("POST /HandSignal open=1 value=4\n") != std::string::npos; }, 3000));
    EXPECT_TRUE(waitFor([&] { return serviceLog("vxInferenceLog.txt").find("GET /FPS\n") != std::string::npos; }, 3000));
    EXPECT_TRUE(waitFor([&] { return serviceLog("vxMes.txt").find("GET /CheckRun\n") != std::string::npos; }, 3000));
    EXPECT_NE(controlLog().find(" port=" + std::to_string(settings().controlPort) + "\n"), std::string::npos);

    // The messenger ignores the stop and is ended.
    threadRequestsToMes(*services, "/StopServer", false);
    EXPECT_TRUE(log.has("[DEBUG]threadRequestsToMes vxMes Terminated!"));
    EXPECT_TRUE(waitFor([&] { return find("vxMes") == 0; }, 3000));

    // Recognition leaves by itself within the second: nothing to end.
    ThreadRequests(*services, "/StopServer", false);
    EXPECT_EQ(find("vxInference"), 0);
    EXPECT_TRUE(log.has("[DEBUG]ThreadRequests vxInference pid == 0"));
    startInference(*services);
    const long second = find("vxInference");
    ASSERT_NE(second, 0);
    ThreadRequests(*services, "/StopServer", true);
    const long third = find("vxInference");
    EXPECT_NE(third, 0);
    EXPECT_NE(third, second);
    EXPECT_EQ(log.count("[INFO]vxInference restarted 5 second ago!"), 3);
    ThreadRequests(*services, "/FPS", false);
    EXPECT_EQ(services.fpsRecognition, 25);
}

} // namespace
} // namespace vx::supervision
