// A fake ONVIF camera for trying discovery by hand, on loopback only:
//   fake_onvif_camera HOST DISCOVERY_PORT NAME [LOGIN PASSWORD]
// e.g. fake_onvif_camera 127.0.0.11 37020 "Gate%20East"; then run the
// manager with VX_ONVIF_PROBE_TARGETS=127.0.0.11:37020 and
// VX_ONVIF_DISCOVERY_PORT=37020. Runs until standard input closes.
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <string>

#include "fake_camera.h"

int main(int argc, char** argv)
{
    if (argc < 4 || std::string(argv[1]).rfind("127.", 0) != 0) {
        std::fputs("usage: fake_onvif_camera 127.x.y.z DISCOVERY_PORT NAME [LOGIN PASSWORD]\n", stderr);
        return 2;
    }
    vx::test::CameraScenario scenario;
    scenario.host = argv[1];
    scenario.discoveryPort = static_cast<std::uint16_t>(std::atoi(argv[2]));
    scenario.scopes = std::string("onvif://www.onvif.org/name/") + argv[3] + " onvif://www.onvif.org/hardware/FC-100";
    scenario.endpoint = "urn:uuid:fake-" + std::string(argv[1]);
    scenario.streamUri = "rtsp://0.0.0.0:8554/" + std::string(argv[1]) + "/main?unicast=true";
    if (argc >= 6) {
        scenario.login = argv[4];
        scenario.password = argv[5];
    }
    vx::test::FakeCamera camera(scenario);
    if (!camera.running()) {
        std::fputs("fake_onvif_camera: can't listen\n", stderr);
        return 1;
    }
    std::printf("camera %s http %u discovery %u\n", argv[1], camera.httpPort(), camera.discoveryPort());
    std::fflush(stdout);
    std::string line;
    while (std::getline(std::cin, line)) {
    }
    return 0;
}
