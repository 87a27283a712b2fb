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

const std::string mainLink =
    "{\"rtsp\":\"rtsp://127.0.0.1:8554/Streaming/Channels/101?transportmode=unicast&profile=main&1\"}\n";

TEST(OnvifTool, ScanListsEachCameraOnceWithItsNameAndNobodyGivesAnEmptyList)
{
    FakeCamera a(CameraScenario{}),
        b({.endpoint = "urn:uuid:second",
           .scopes = "onvif://www.onvif.org/name/%D0%92%D1%8A%D0%B5%D0%B7%D0%B4+%22A%22"});
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

    LoopbackDiscovery nobody("127.0.0.1:9", "9");
    EXPECT_EQ(runOnvifTool("-scan").run.output, "{\"cameras\":[]}\n");
}

// The ways cameras differ, each of them giving the link.
TEST(OnvifTool, LinkFromEachKindOfCamera)
{
    struct Case {
        const char* what;
        CameraScenario scenario;
        std::string link = mainLink;
        const char* asked = nullptr;   // an operation the tool must have used
        int probes = 0;                // at least this many probes came
    };
    const Case cases[] = {
        // The profile with a video encoder came first; the audio one was never asked.
        {"ws-security, camera clock months ahead", {.clockOffset = 90LL * 24 * 3600 + 1234}, mainLink,
         "GetStreamUri(media)"},
        {"digest when the security header is refused",
         {.wsSecurity = false, .digest = true, .refuseSecurityHeader = true}},
        {"media2 when there is no media and the first profile faults",
         {.media = false, .faultFirstProfile = true, .streamUri = "rtsp://127.0.0.2/m2?x=1"},
         "{\"rtsp\":\"rtsp://127.0.0.1/m2?x=1&p2=m2sub\"}\n"},
        {"capabilities after a services fault, no action after an empty answer",
         {.authForTime = true, .servicesFault = true, .emptyBodyWithAction = true}, mainLink, "GetCapabilities"},
        {"device service found by a unicast probe", {.devicePath = "/onvif/device_other"}, mainLink, nullptr, 1},
        {"broken xml gives no link", {.brokenXml = true}, "{}\n"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        FakeCamera camera(c.scenario);
        ASSERT_TRUE(camera.running());
        EXPECT_EQ(linkOf(camera), c.link);
        if (c.asked) {
            EXPECT_GT(std::ranges::count(camera.operations(), std::string(c.asked)), 0) << c.asked;
        }
        EXPECT_GE(camera.probes(), c.probes);
    }
}

// A wrong login is met by the discovery tests of both platforms.
TEST(OnvifTool, ASlowCameraGivesNoLinkWithinTheTimeLimit)
{
    FakeCamera camera({.answerDelayMs = 2500});
    ASSERT_TRUE(camera.running());
    ScopedEnv limit("VX_ONVIF_TIME_LIMIT_MS", "1200");
    const TimedRun timed = runOnvifTool("-rtsp 127.0.0.1:" + port(camera.httpPort()) + " admin admin");
    EXPECT_EQ(timed.run.output, "{}\n");
    EXPECT_LT(timed.ms, 2500);
}

} // namespace
} // namespace vx::test
