#include <gtest/gtest.h>

#include <set>

#include "platform/paths.h"
#include "service_test_support.h"
#include "supervision/service_launcher.h"
#include "supervision/service_requests.h"
#include "supervision/service_watch.h"

namespace vx::supervision {
namespace {

// A service's image name on this platform (".exe" on Windows).
std::string image(const std::string& name) { return name + platform::executableSuffix; }

class Workers : public ::testing::Test {
protected:
    void SetUp() override
    {
        services.settings.recognitionPort = service.port();
        services.settings.controlPort = service.port();
        services.settings.mesPort = service.port();
        services->process.find = [this](const std::string& name) {
            finds.push_back(name);
            return foundPid;
        };
        services->process.terminate = [this](long pid) {
            terminated.push_back(pid);
            return true;
        };
        services->process.start = [this](const platform::ProcessStartInfo& info) {
            starts.push_back(info.commandLine);
            return std::unique_ptr<platform::StartedProcess>();
        };
        initHTTPClient(*services);
        initHTTPClientDirect(*services);
        initHTTPClientMes(*services);
    }
    // The request log, with the poll's requests in the order they came.
    test::LogCapture log{0};
    test::LocalService service;
    test::TestServices services;
    long foundPid = 0;
    std::vector<std::string> finds;
    std::vector<long> terminated;
    std::vector<std::string> starts;
};

TEST_F(Workers, FpsPublishesWhatTheReplySays)
{
    struct Case {
        int status;
        std::string body;
        int fps;
        std::vector<std::string> lines;
    };
    const std::vector<Case> cases = {
        {200, "{\"fps\":17}", 17, {"[DEBUG]ThreadRequests res 200", "[DEBUG]ThreadRequests JSON {\"fps\":17}"}},
        {200, "{}", 0, {"[DEBUG]ThreadRequests res 200", "[DEBUG]ThreadRequests JSON {}"}},
        {200, "{\"fps\":\"many\"}", -1,
         {"[DEBUG]ThreadRequests res 200", "[DEBUG]ThreadRequests JSON {\"fps\":\"many\"}", "[ERROR]ThreadRequests JSON ..."}},
        {200, "garbage", -1, {"[DEBUG]ThreadRequests res 200", "[ERROR]ThreadRequests JSON parse_error"}},
        {503, "{\"fps\":9}", -1, {"[DEBUG]ThreadRequests res 503"}},
    };
    for (const Case& c : cases) {
        test::LogCapture caseLog{0};
        services.fpsRecognition = 99;
        service.answerFps(c.status, c.body);
        ThreadRequests(*services, "/FPS", false);
        EXPECT_EQ(services.fpsRecognition, c.fps) << c.body;
        std::vector<std::string> expected{"[DEBUG]ThreadRequests /FPS"};
        expected.insert(expected.end(), c.lines.begin(), c.lines.end());
        expected.push_back("[TRACE]statusInferenceServer:" + std::to_string(c.fps));
        EXPECT_EQ(caseLog.lines(), expected) << c.body;
    }
    EXPECT_TRUE(finds.empty());
}

TEST_F(Workers, CheckRunCountsAnyReplyAndNoReply)
{
    threadRequestsToDirect(*services, "/CheckRun", false);
    threadRequestsToMes(*services, "/CheckRun", false);
    EXPECT_EQ(services.statusControl, 0);
    EXPECT_EQ(services.statusMes, 0);
    EXPECT_TRUE(log.has("[DEBUG]ThreadRequestsToDirect res 200"));
    EXPECT_TRUE(log.has("[DEBUG]threadRequestsToMes res 200"));

    // A path the service doesn't know still answers (404): alive.
    services.statusControl = -1;
    services.settings.controlPort = service.port();
    threadRequestsToDirect(*services, "/Unknown", false);
    EXPECT_TRUE(log.has("[DEBUG]ThreadRequestsToDirect res 404"));

    // Nobody on the port: no reply.
    const int deadPort = test::freeLoopbackPort();
    initHTTPClientDirect(services->clients, deadPort);
    initHTTPClientMes(services->clients, deadPort);
    threadRequestsToDirect(*services, "/CheckRun", false);
    threadRequestsToMes(*services, "/CheckRun", false);
    EXPECT_EQ(services.statusControl, -1);
    EXPECT_EQ(services.statusMes, -1);
}

TEST_F(Workers, ControlPostsCarryTheirFormFieldsAndStopThere)
{
    threadRequestsToDirect(*services, "/GenerateReport", false, 7, 1);
    threadRequestsToDirect(*services, "/HandSignal", false, 3, 0);
    threadRequestsToDirect(*services, "/UpdateConfig", false);
    EXPECT_EQ(service.requests(3), (std::vector<std::string>{"POST /GenerateReport value=7",
                                                           "POST /HandSignal open=0 value=3", "GET /UpdateConfig"}));
    // The POSTs look at no reply.
    EXPECT_EQ(log.lines(), (std::vector<std::string>{"[DEBUG]threadRequestsToDirect /GenerateReport",
                                                     "[DEBUG]threadRequestsToDirect /HandSignal",
                                                     "[DEBUG]threadRequestsToDirect /UpdateConfig",
                                                     "[DEBUG]ThreadRequestsToDirect res 200"}));
    EXPECT_EQ(services.statusControl, -1);
}

TEST_F(Workers, StopServerEndsTheServiceAfterTenSleepsAndRestartsWhenAsked)
{
    foundPid = 321;
    ThreadRequests(*services, "/StopServer", true);
    EXPECT_EQ(services.sleeps, std::vector<int>(10, 100));
    EXPECT_EQ(finds, std::vector<std::string>{image("vxInference")});
    EXPECT_EQ(terminated, std::vector<long>{321});
    ASSERT_EQ(starts.size(), 1u);
    EXPECT_EQ(starts[0].rfind(image("vxInference") + " ", 0), 0u);
    EXPECT_TRUE(log.has("[DEBUG]ThreadRequests " + image("vxInference") + " Terminated!"));
    EXPECT_EQ(services.fpsRecognition, -1);   // "/StopServer" publishes nothing

    foundPid = 0;
    threadRequestsToDirect(*services, "/StopServer", false);
    threadRequestsToMes(*services, "/StopServer", true);
    EXPECT_TRUE(log.has("[DEBUG]ThreadRequestsToDirect " + image("vxControl") + " pid == 0"));
    EXPECT_TRUE(log.has("[DEBUG]threadRequestsToMes " + image("vxMes") + " pid == 0"));
    EXPECT_EQ(terminated.size(), 1u);
    ASSERT_EQ(starts.size(), 2u);   // the control service wasn't asked to restart
    EXPECT_EQ(starts[1].rfind(image("vxMes") + " ", 0), 0u);
    EXPECT_EQ(service.requests(3), std::vector<std::string>(3, "GET /StopServer"));
}

TEST_F(Workers, ShuttingDownDuringTheGraceEndsAndRestartsNothing)
{
    foundPid = 321;
    services->sleep = [this](int ms) {
        services.sleeps.push_back(ms);
        if (services.sleeps.size() == 4)
            services.shuttingDown = true;
    };
    ThreadRequests(*services, "/StopServer", true);
    threadRequestsToDirect(*services, "/StopServer", true);
    threadRequestsToMes(*services, "/StopServer", true);
    EXPECT_EQ(services.sleeps.size(), 6u);   // four, then one for each of the other two
    EXPECT_TRUE(finds.empty());
    EXPECT_TRUE(terminated.empty());
    EXPECT_TRUE(starts.empty());
    EXPECT_TRUE(log.has("[TRACE]ThreadRequests 'finish' ok!"));
    EXPECT_TRUE(log.has("[TRACE]ThreadRequestsToDirect 'finish' ok!"));
    EXPECT_TRUE(log.has("[TRACE]threadRequestsToMes 'finish' ok!"));
}

TEST_F(Workers, NoClientNoRequest)
{
    ServiceClients& clients = services->clients;
    stopClients(clients);
    clients.clientMes.store(nullptr);
    ThreadRequests(*services, "/FPS", false);
    threadRequestsToDirect(*services, "/CheckRun", false);
    threadRequestsToMes(*services, "/CheckRun", false);
    EXPECT_EQ(log.lines(), (std::vector<std::string>{"[DEBUG]ThreadRequests /FPS", "[ERROR]ClientHTTP invalid",
                                                     "[ERROR]ClientHTTPDirect invalid", "[ERROR]ClientHTTPMes invalid"}));
    EXPECT_TRUE(service.requests().empty());
}

TEST_F(Workers, PollSpawnsThreeRequestsUnlessShuttingDown)
{
    std::vector<std::function<void()>> spawned;
    auto spawn = [&](std::function<void()> task) { spawned.push_back(std::move(task)); };
    pollServices(services.context, spawn);
    EXPECT_EQ(log.lines(),
              (std::vector<std::string>{"[DEBUG]inference request!", "[DEBUG]control request!", "[DEBUG]mes request!"}));
    for (auto& task : spawned)
        task();
    EXPECT_EQ(services.fpsRecognition, 17);
    EXPECT_EQ(services.statusControl, 0);
    EXPECT_EQ(services.statusMes, 0);

    spawned.clear();
    services.shuttingDown = true;
    pollServices(services.context, spawn);
    EXPECT_EQ(spawned.size(), 1u);
}

TEST_F(Workers, WatchStartsWhatIsMissing)
{
    std::set<std::string> running{image("vxControl")};
    services->process.find = [&](const std::string& name) { return running.count(name) ? 77L : 0L; };
    watchServices(*services, false);
    ASSERT_EQ(starts.size(), 1u);
    EXPECT_EQ(starts[0].rfind(image("vxInference") + " ", 0), 0u);
    starts.clear();
    running = {};
    watchServices(*services, true);
    ASSERT_EQ(starts.size(), 3u);
    EXPECT_EQ(starts[1], image("vxControl") + " ");
    EXPECT_EQ(starts[2].rfind(image("vxMes") + " ", 0), 0u);
}

} // namespace
} // namespace vx::supervision
