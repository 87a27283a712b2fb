#pragma once
// A camera for the tests, on loopback only: a WS-Discovery responder on UDP
// and the device and media services over HTTP, driven by a scenario. The
// wrong hosts it hands out are 127.0.0.2, where nothing listens, so a
// missed rewrite fails at once and nothing leaves loopback.
#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "udp_socket.h"

namespace httplib { class Server; }

namespace vx::test {

struct CameraScenario {
    std::string host = "127.0.0.1";        // must be a loopback address
    std::uint16_t discoveryPort = 0;       // 0: any free port
    std::string endpoint = "urn:uuid:5f0c0d6e-0000-4000-8000-000000000001";
    std::string scopes = "onvif://www.onvif.org/type/video_encoder onvif://www.onvif.org/name/Fake%20Camera "
                         "onvif://www.onvif.org/hardware/FC-100";
    std::string login = "admin";
    std::string password = "admin";
    std::int64_t clockOffset = 0;          // the camera's clock minus ours, seconds
    bool wsSecurity = true;                // takes a UsernameToken
    bool digest = false;                   // asks for HTTP Digest when no token passed
    bool refuseSecurityHeader = false;     // a MustUnderstand fault for any wsse:Security
    bool authForTime = false;              // GetSystemDateAndTime wants authentication too
    bool media = true;                     // ver10 media service (ver20 always there)
    bool servicesFault = false;            // GetServices faults: GetCapabilities must serve
    bool faultFirstProfile = false;        // GetStreamUri faults for the first profile
    bool emptyBodyWithAction = false;      // an empty answer while the content type names the action
    bool brokenXml = false;                // every SOAP answer cut in the middle
    std::string streamUri = "rtsp://0.0.0.0:8554/Streaming/Channels/101?transportmode=unicast";
    std::string devicePath = "/onvif/device_service";
    int answerDelayMs = 0;                 // every HTTP answer and ProbeMatches waits this long
};

class FakeCamera {
public:
    explicit FakeCamera(CameraScenario scenario);
    ~FakeCamera();
    FakeCamera(const FakeCamera&) = delete;
    FakeCamera& operator=(const FakeCamera&) = delete;

    bool running() const { return httpPort_ != 0 && discoveryPort_ != 0; }
    std::uint16_t httpPort() const { return httpPort_; }
    std::uint16_t discoveryPort() const { return discoveryPort_; }
    // The operations asked, in order, e.g. "GetProfiles(media2)"; and how
    // many probes came in.
    std::vector<std::string> operations() const;
    int probes() const { return probes_; }

private:
    void serveDiscovery();
    std::string answer(const std::string& path, const std::string& contentType, const std::string& body,
                       const std::string& authorization, int& status, std::string& challenge);

    CameraScenario scenario_;
    std::unique_ptr<httplib::Server> server_;
    std::thread httpThread_;
    std::thread udpThread_;
    std::unique_ptr<onvif::UdpSocket> udpSocket_;
    std::uint16_t httpPort_ = 0;
    std::uint16_t discoveryPort_ = 0;
    std::atomic<bool> stopping_{false};
    std::atomic<int> probes_{0};
    mutable std::mutex mutex_;
    std::vector<std::string> operations_;
};

} // namespace vx::test
