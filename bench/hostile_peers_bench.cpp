// The manager's main thread under hostile peers: each attack of
// tests/hostile run against the real window and core in this process, and
// for each the delay of an event posted to the main thread every 20 ms (max
// and 99th percentile), the growth of resident memory, the zones drawn and
// the good stream's pictures. Headless; prints one line per attack.
//
//   build/bench/hostile_peers_bench [attack...]
//   attacks: calm no-zero past-view unknown-handle flood silent-services garbage-camera
#include <cstdlib>
#include <future>
#include <iostream>
#include <set>
#include <sstream>

#include "core/discovery_tool.h"
#include "dialogs/camera_link_form.h"
#include "dialogs/camera_scan_form.h"
#include "manager_under_attack.h"
#include "support/qt_application.h"

using namespace vx::test;
using namespace vx::test::hostile;

namespace {

Figures streamAttack(ManagerUnderAttack& site, const std::string& mode, double seconds, int rate)
{
    auto peer = site.startHostileStream(mode, seconds, rate);
    if (!peer) {
        std::cerr << mode << ": hostile_stream didn't start" << std::endl;
        return {};
    }
    bool done = false;
    const Figures figures = site.run(static_cast<int>(seconds * 1000) + 4000, [&] {
        if (auto line = peer->readLine(0))
            done = line->rfind("done", 0) == 0;
        return done;
    });
    peer->closeInput();
    peer->waitExit(2000);
    return figures;
}

} // namespace

int main(int argc, char* argv[])
{
    ::setenv("QT_QPA_PLATFORM", "offscreen", 0);
    std::set<std::string> wanted(argv + 1, argv + argc);
    const auto chosen = [&wanted](const std::string& name) { return wanted.empty() || wanted.count(name) > 0; };
    qtApplication();
    RuntimeSandbox sandbox;

    {
        ManagerUnderAttack site;
        if (!site.start(15000)) {
            std::cerr << "the manager's good stream gave no picture" << std::endl;
            return 1;
        }
        if (chosen("calm"))
            std::cout << site.run(5000).line("calm") << std::endl;
        for (const char* mode : {"no-zero", "past-view", "unknown-handle"})
            if (chosen(mode))
                std::cout << streamAttack(site, mode, 5.0, 200).line(mode) << std::endl;
        if (chosen("flood"))
            std::cout << streamAttack(site, "flood", 5.0, 10000).line("flood") << std::endl;
    }

    if (chosen("silent-services")) {
        auto service = startPeer("silent_service", {"3"});
        std::istringstream line(service ? service->readLine(5000).value_or("") : "");
        ServicePorts ports;
        line >> ports.recognition >> ports.control >> ports.messengers;
        ManagerUnderAttack site(ports);
        if (ports.messengers != 0 && site.start(15000))
            std::cout << site.run(10000).line("silent-services") << std::endl;
    }

    if (chosen("garbage-camera")) {
        const std::string host = "127.0.0.21";
        auto camera = startPeer("garbage_camera", {host});
        std::istringstream line(camera ? camera->readLine(5000).value_or("") : "");
        std::string udpPort, tcpPort;
        line >> udpPort >> tcpPort;
        ScopedEnv targets("VX_ONVIF_PROBE_TARGETS", host + ":" + udpPort);
        ScopedEnv port("VX_ONVIF_DISCOVERY_PORT", udpPort);
        ManagerUnderAttack site;
        if (!tcpPort.empty() && site.start(15000)) {
            auto calls = std::async(std::launch::async, [&] {
                const vx::dialogs::ToolCall tool = vx::core::discoveryToolCall(VEXLANE_BIN_DIR);
                std::atomic<bool> cancelled = false;
                vx::dialogs::runScanCall(tool, cancelled);
                vx::dialogs::runLinkCall({host + ":" + tcpPort + " garbage", "admin", "admin"}, tool, cancelled);
            });
            const Figures figures = site.run(45000, [&calls] {
                return calls.wait_for(std::chrono::seconds(0)) == std::future_status::ready;
            });
            calls.wait();
            std::cout << figures.line("garbage-camera") << std::endl;
        }
    }
    return 0;
}
