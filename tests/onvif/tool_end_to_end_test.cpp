// The real tool against fake cameras on loopback: the output shapes of both
// calls and the ways cameras differ.
#include <gtest/gtest.h>

#include <algorithm>

#include "fake_camera.h"
#include "onvif_fixture.h"

namespace vx::test {
namespace {

std::string port(std::uint16_t p) { return std::to_string(p); }

std::string linkOf(const FakeCamera& camera)
{
    LoopbackDiscovery loopback("127.0.0.1:" + port(camera.discoveryPort()), port(camera.discoveryPort()));
    const TimedRun timed = runOnvifTool("-rtsp 127.0.0.1:" + port(camera.httpPort()) + " admin admin");
    EXPECT_TRUE(timed.run.ended);
    EXPECT_LT(timed.ms, 17500);
    return timed.run.output;
}

bool asked(const FakeCamera& camera, const std::string& operation)
{
    const auto list = camera.operations();
    return std::find(list.begin(), list.end(), operation) != list.end();
}

const std::string mainLink =
    "{\"rtsp\":\"rtsp://127.0.0.1:8554/Streaming/Channels/101?transportmode=unicast&profile=main&1\"}\n";

TEST(OnvifTool, ScanListsEachCameraOnceWithItsName)
{
    CameraScenario second;
    second.endpoint = "urn:uuid:second";
    second.scopes = "onvif://www.onvif.org/name/%D0%92%D1%8A%D0%B5%D0%B7%D0%B4+%22A%22";
    FakeCamera a(CameraScenario{}), b(second);
    ASSERT_TRUE(a.running() && b.running());
    LoopbackDiscovery loopback("127.0.0.1:" + port(a.discoveryPort()) + ",127.0.0.1:" + port(b.discoveryPort()), "1");
    const TimedRun timed = runOnvifTool("-scan");
    ASSERT_TRUE(timed.run.ended);
    EXPECT_LT(timed.ms, 5000);
    const std::string first = "{\"ip\":\"127.0.0.1\",\"name\":\"Fake Camera\"}";
    const std::string other = "{\"ip\":\"127.0.0.1\",\"name\":\"\xD0\x92\xD1\x8A\xD0\xB5\xD0\xB7\xD0\xB4 \\\"A\\\"\"}";
    const std::string& out = timed.run.output;
    EXPECT_TRUE(out == "{\"cameras\":[" + first + "," + other + "]}\n"
                || out == "{\"cameras\":[" + other + "," + first + "]}\n")
        << out;
    // Both device types, each sent more than once.
    EXPECT_GE(a.probes(), 4);
}

TEST(OnvifTool, ScanWithNobodyAnsweringGivesAnEmptyList)
{
    LoopbackDiscovery loopback("127.0.0.1:9", "9");
    EXPECT_EQ(runOnvifTool("-scan").run.output, "{\"cameras\":[]}\n");
}

TEST(OnvifTool, WsSecurityWithTheCameraClockMonthsAhead)
{
    CameraScenario scenario;
    scenario.clockOffset = 90LL * 24 * 3600 + 1234;
    FakeCamera camera(scenario);
    ASSERT_TRUE(camera.running());
    EXPECT_EQ(linkOf(camera), mainLink);
    // The profile with a video encoder came first; the audio one was never asked.
    EXPECT_TRUE(asked(camera, "GetStreamUri(media)"));
}

TEST(OnvifTool, DigestWhenTheSecurityHeaderIsRefused)
{
    CameraScenario scenario;
    scenario.wsSecurity = false;
    scenario.digest = true;
    scenario.refuseSecurityHeader = true;
    FakeCamera camera(scenario);
    ASSERT_TRUE(camera.running());
    EXPECT_EQ(linkOf(camera), mainLink);
}

TEST(OnvifTool, Media2WhenThereIsNoMediaAndTheFirstProfileFaults)
{
    CameraScenario scenario;
    scenario.media = false;
    scenario.faultFirstProfile = true;
    scenario.streamUri = "rtsp://127.0.0.2/m2?x=1";
    FakeCamera camera(scenario);
    ASSERT_TRUE(camera.running());
    EXPECT_EQ(linkOf(camera), "{\"rtsp\":\"rtsp://127.0.0.1/m2?x=1&p2=m2sub\"}\n");
}

TEST(OnvifTool, CapabilitiesAfterAServicesFaultAndNoActionAfterAnEmptyAnswer)
{
    CameraScenario scenario;
    scenario.servicesFault = true;
    scenario.emptyBodyWithAction = true;
    scenario.authForTime = true;
    FakeCamera camera(scenario);
    ASSERT_TRUE(camera.running());
    EXPECT_EQ(linkOf(camera), mainLink);
    EXPECT_TRUE(asked(camera, "GetCapabilities"));
}

TEST(OnvifTool, DeviceServiceFoundByAUnicastProbe)
{
    CameraScenario scenario;
    scenario.devicePath = "/onvif/device_other";
    FakeCamera camera(scenario);
    ASSERT_TRUE(camera.running());
    EXPECT_EQ(linkOf(camera), mainLink);
    EXPECT_GE(camera.probes(), 1);
}

// A wrong login is met by the discovery tests of both platforms.
TEST(OnvifTool, BrokenXmlAndSlowCamerasGiveNoLink)
{
    {
        CameraScenario scenario;
        scenario.brokenXml = true;
        FakeCamera camera(scenario);
        ASSERT_TRUE(camera.running());
        EXPECT_EQ(linkOf(camera), "{}\n");
    }
    {
        CameraScenario scenario;
        scenario.answerDelayMs = 2500;
        FakeCamera camera(scenario);
        ASSERT_TRUE(camera.running());
        ScopedEnv limit("VX_ONVIF_TIME_LIMIT_MS", "1200");
        const TimedRun timed = runOnvifTool("-rtsp 127.0.0.1:" + port(camera.httpPort()) + " admin admin");
        EXPECT_EQ(timed.run.output, "{}\n");
        EXPECT_LT(timed.ms, 2500);
    }
}

} // namespace
} // namespace vx::test
