#include <gtest/gtest.h>

#include "config/text_codec.h"
#include "platform/paths.h"
#include "service_test_support.h"
#include "supervision/service_launcher.h"

namespace vx::supervision {
namespace {

using config::utf8ToCp1251;

// A service's image name and the separator on this platform (".exe" and '\\'
// on Windows).
std::string image(const std::string& name) { return name + platform::executableSuffix; }
const std::string sep(1, platform::pathSeparator);

TEST(ServiceCommandLines, AreBuiltExactly)
{
    const std::string configs = utf8ToCp1251("/opt/вх сист/configs");
    const std::string logs = utf8ToCp1251("/opt/вх сист/logs");
    EXPECT_EQ(inferenceCommandLine(configs, logs),
              image("vxInference") + " \"" + configs + "/vx_recog_config_srv.json\" \"" + logs +
                  "/vxInferenceLog.txt\"");
    EXPECT_EQ(controlCommandLine(), image("vxControl") + " ");
    EXPECT_EQ(mesCommandLine(configs, logs, 3),
              image("vxMes") + " \"" + configs + "/vx_mess_config.json\" \"" + logs + sep + "vxMes.txt\"");
    EXPECT_EQ(mesCommandLine(configs, logs, 2),
              image("vxMes") + " \"" + configs + "/vx_mess_config.json\" \"" + logs + sep + "vxMes.txt\" -logging");
}

struct Outcome {
    bool started;
    bool ends;
    int code;
};

class StartRoutines : public ::testing::Test {
protected:
    void SetUp() override
    {
        services.settings.baseDirectory = "/opt/vx";
        services.settings.configDirectory = utf8ToCp1251("/opt/vx/конфиг");
        services.settings.systemLogPath = "/opt/vx/logs";
        services.settings.recognitionPort = 4001;
        services.settings.controlPort = 4002;
        services.settings.mesPort = 4003;
        services->process.start = [this](const platform::ProcessStartInfo& info) -> std::unique_ptr<platform::StartedProcess> {
            starts.push_back(info);
            if (!outcome.started)
                return nullptr;
            auto process = std::make_unique<test::FakeProcess>();
            process->ends = outcome.ends;
            process->code = outcome.code;
            process->waits = &waits;
            return process;
        };
    }
    test::LogCapture log{0};
    test::TestServices services;
    Outcome outcome{true, false, 0};
    std::vector<platform::ProcessStartInfo> starts;
    std::vector<int> waits;
};

TEST_F(StartRoutines, StartInTheBaseFolderWithTheirOwnOptions)
{
    startInference(*services);
    startControl(*services);
    services.settings.logThreshold = 2;
    startMes(*services);
    ASSERT_EQ(starts.size(), 3u);
    // The command line reaches the platform as UTF-8.
    EXPECT_EQ(starts[2].commandLine,
              image("vxMes") + " \"/opt/vx/конфиг/vx_mess_config.json\" \"/opt/vx/logs" + sep + "vxMes.txt\" -logging");
    for (const auto& info : starts) {
        EXPECT_EQ(info.workingDirectory, "/opt/vx");
        EXPECT_EQ(info.searchFolder, "/opt/vx");
    }
    EXPECT_FALSE(starts[0].inheritHandles);
    EXPECT_FALSE(starts[0].noConsole);
    EXPECT_FALSE(starts[1].inheritHandles);
    EXPECT_TRUE(starts[2].inheritHandles);
    EXPECT_TRUE(starts[2].noConsole);
    EXPECT_EQ(waits, (std::vector<int>{5000, 5000, 5000}));
}

TEST_F(StartRoutines, LogWhatCameOfTheStart)
{
    outcome = {true, false, 0};
    startInference(*services);
    outcome = {true, true, 0};
    startControl(*services);
    outcome = {true, true, 3};
    startMes(*services);
    outcome = {false, false, 0};
    startInference(*services);   // nothing logged for a start that failed
    EXPECT_EQ(log.lines(),
              (std::vector<std::string>{
                  "[INFO]" + image("vxInference") + " restarted 5 second ago!",
                  "[ERROR]" + image("vxControl") + utf8ToCp1251(" - процесс завершился спустя менее 5 секунд после старта"),
                  "[ERROR]" + image("vxMes") +
                      utf8ToCp1251(" - процесс завершился спустя менее 5 секунд после старта с ошибкой: ") + "3",
              }));
}

TEST_F(StartRoutines, RebuildTheClientInEveryCase)
{
    for (const Outcome o : {Outcome{true, false, 0}, Outcome{true, true, 3}, Outcome{false, false, 0}}) {
        outcome = o;
        const auto recognition = services->clients.clientRecognition.load();
        const auto control = services->clients.clientControl.load();
        const auto mes = services->clients.clientMes.load();
        startInference(*services);
        startControl(*services);
        startMes(*services);
        EXPECT_NE(services->clients.clientRecognition.load(), nullptr);
        EXPECT_NE(services->clients.clientRecognition.load(), recognition);
        EXPECT_NE(services->clients.clientControl.load(), control);
        EXPECT_NE(services->clients.clientMes.load(), mes);
    }
}

TEST(HttpClients, StopClientsLeavesTheMessengers)
{
    ServiceClients clients;
    initHTTPClientMes(clients, 5000);
    initHTTPClient(clients, 6000);
    initHTTPClientDirect(clients, 6001);
    stopClients(clients);
    EXPECT_EQ(clients.clientRecognition.load(), nullptr);
    EXPECT_EQ(clients.clientControl.load(), nullptr);
    EXPECT_NE(clients.clientMes.load(), nullptr);
}

} // namespace
} // namespace vx::supervision
