// The manager among peers that misbehave, all real processes on this
// machine: a stream that answers with broken blocks or floods the window, a
// service that takes connections and never answers, a camera that answers
// discovery with a megabyte of garbage. Throughout, the main thread must
// take a posted event within a second (scaled for slow builds), the tiles
// must keep coming with the good stream's pictures, and memory must stay
// bounded. The measured figures are printed; only these generous bounds are
// checked. The peers are ended by pid as their objects go.
#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <iostream>
#include <sstream>

#include "core/discovery_tool.h"
#include "dialogs/camera_discovery.h"
#include "dialogs/camera_link_form.h"
#include "dialogs/camera_scan_form.h"
#include "manager_under_attack.h"
#include "support/qt_application.h"
#include "support/time_scale.h"
#include "ui/qt/main_window.h"

namespace vx::test::hostile {
namespace {

constexpr long memoryBoundKb = 150 * 1024;

void expectLively(const Figures& figures, const std::string& attack)
{
    std::cout << "[hostile] " << figures.line(attack) << std::endl;
    EXPECT_GT(figures.samples, 0) << attack;
    EXPECT_LT(figures.maxMs, scaledMs(1000)) << attack;
    EXPECT_GT(figures.zonesShown, 0) << attack;
    EXPECT_GT(figures.goodPictures, 0) << attack;
    EXPECT_LT(figures.rssGrowthKb(), memoryBoundKb + allocatorHoldKb()) << attack;
}

bool hostileHasPicture(ManagerUnderAttack& site)
{
    bool has = false;
    site.state().streams.withDrawLock([&](std::vector<core::CameraRuntime>& records) {
        for (const core::CameraRuntime& record : records)
            if (record.id == site.hostileId())
                has = record.hasImage;
    });
    return has;
}

// Runs one stream attack until the peer reports its notifications sent.
Figures runStreamAttack(ManagerUnderAttack& site, const std::string& mode, double seconds, int rate, long& sent)
{
    auto peer = site.startHostileStream(mode, seconds, rate);
    EXPECT_TRUE(peer) << mode;
    if (!peer)
        return {};
    std::string done;
    const Figures figures = site.run(scaledMs(static_cast<int>(seconds * 1000) + 4000), [&] {
        if (auto line = peer->readLine(0))
            done = *line;
        return !done.empty();
    });
    sent = done.rfind("done ", 0) == 0 ? std::atol(done.c_str() + 5) : 0;
    return figures;   // the peer is ended by pid
}

class HostilePeers : public ::testing::Test {
protected:
    void SetUp() override { qtApplication(); }
    RuntimeSandbox sandbox_;
};

TEST_F(HostilePeers, BrokenStreamAnswersAreDroppedAndAFloodDoesNotStallTheWindow)
{
    ManagerUnderAttack site;
    ASSERT_TRUE(site.start(scaledMs(15000)));
    for (const char* mode : {"no-zero", "past-view", "unknown-handle"}) {
        long sent = 0;
        const Figures figures = runStreamAttack(site, mode, 1.5, 200, sent);
        EXPECT_GT(sent, 100) << mode;
        expectLively(figures, mode);
        EXPECT_FALSE(hostileHasPicture(site)) << mode;
    }

    // Ten thousand notifications a second for five seconds, each naming a
    // good picture: the window goes on, and what it can't take is dropped.
    long sent = 0;
    const Figures flood = runStreamAttack(site, "flood", 5.0, 10000, sent);
    std::cout << "[hostile] flood notifications sent: " << sent << std::endl;
    EXPECT_GT(sent, 10000);
    expectLively(flood, "flood");
    EXPECT_TRUE(hostileHasPicture(site));
}

TEST_F(HostilePeers, ServicesThatNeverAnswerLeaveTheWindowResponsiveAndShowStop)
{
    auto service = startPeer("silent_service", {"3"});
    ASSERT_TRUE(service);
    std::istringstream line(service->readLine(5000).value_or(""));
    ServicePorts ports;
    line >> ports.recognition >> ports.control >> ports.messengers;
    ASSERT_NE(ports.messengers, 0);

    ManagerUnderAttack site(ports);
    ASSERT_TRUE(site.start(scaledMs(15000)));
    // Two polls at least, each waiting out the clients' one-second timeout.
    const Figures figures = site.run(4500);
    expectLively(figures, "silent services");
    EXPECT_EQ(site.servicePanel(), "Анализ:Стоп\nКонтроль:Стоп\nУправление:Стоп\nМессендж:Стоп");
}

TEST_F(HostilePeers, ACameraAnsweringWithAMegabyteOfGarbageIsNoCamera)
{
    const std::string host = "127.0.0.21";
    auto camera = startPeer("garbage_camera", {host});
    ASSERT_TRUE(camera);
    std::istringstream line(camera->readLine(5000).value_or(""));
    std::string udpPort, tcpPort;
    line >> udpPort >> tcpPort;
    ASSERT_FALSE(tcpPort.empty());
    // Probes go to the camera's address only, never to the network.
    ScopedEnv targets("VX_ONVIF_PROBE_TARGETS", host + ":" + udpPort);
    ScopedEnv port("VX_ONVIF_DISCOVERY_PORT", udpPort);

    ManagerUnderAttack site;
    ASSERT_TRUE(site.start(scaledMs(15000)));
    // The two calls of the discovery dialogs, on a thread as theirs.
    auto calls = std::async(std::launch::async, [&host, &tcpPort] {
        const dialogs::ToolCall tool = core::discoveryToolCall(VEXLANE_BIN_DIR);
        std::atomic<bool> cancelled = false;
        const dialogs::ScanOutcome scan = dialogs::runScanCall(tool, cancelled);
        const dialogs::LinkOutcome link =
            dialogs::runLinkCall({host + ":" + tcpPort + " garbage", "admin", "admin"}, tool, cancelled);
        return std::pair(scan, link);
    });
    const Figures figures = site.run(scaledMs(45000), [&calls] {
        return calls.wait_for(std::chrono::seconds(0)) == std::future_status::ready;
    });
    ASSERT_EQ(calls.wait_for(std::chrono::seconds(0)), std::future_status::ready);
    const auto [scan, link] = calls.get();
    expectLively(figures, "garbage camera");
    EXPECT_EQ(scan.end, dialogs::DiscoveryEnd::ok);
    EXPECT_TRUE(dialogs::parseCameras(scan.output).empty()) << scan.output;
    EXPECT_EQ(link.end, dialogs::DiscoveryEnd::open) << link.link;
}

} // namespace
} // namespace vx::test::hostile
