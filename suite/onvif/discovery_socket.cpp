#include "discovery_socket.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>

#include "onvif_addresses.h"

namespace onvif {

namespace {

using Clock = std::chrono::steady_clock;

constexpr const char* multicastGroup = "239.255.255.250";
constexpr int resendGapMs = 150;
constexpr int sendRounds = 3;

// One socket per up, non-loopback IPv4 interface, each bound to its
// address and sending its multicast there; one plain socket when there is
// none, which reaches the default route.
std::vector<UdpSocket> multicastSockets()
{
    std::vector<UdpSocket> sockets;
    for (const std::string& address : interfaceAddresses()) {
        UdpSocket socket;
        if (!socket.valid() || !socket.bind({address, 0}))
            continue;
        socket.multicastFrom(address);
        sockets.push_back(std::move(socket));
    }
    if (sockets.empty()) {
        UdpSocket socket;
        if (socket.valid())
            sockets.push_back(std::move(socket));
    }
    return sockets;
}

// Sends every probe to every target from every socket, a few rounds apart,
// and hands each datagram that comes back, with its source address, to
// `take` until `listenMs` has passed or `take` says it has enough.
template <class Take>
void probeAndListen(const std::vector<UdpSocket>& sockets, const std::vector<Endpoint>& targets, int listenMs,
                    Take take)
{
    const std::string probes[2] = {probeMessage(newMessageId(), ProbeType::networkVideoTransmitter),
                                   probeMessage(newMessageId(), ProbeType::device)};
    std::vector<const UdpSocket*> waited;
    for (const UdpSocket& socket : sockets)
        waited.push_back(&socket);
    const auto start = Clock::now();
    const auto end = start + std::chrono::milliseconds(listenMs);
    int roundsSent = 0;
    for (;;) {
        const auto now = Clock::now();
        if (now >= end)
            return;
        if (roundsSent < sendRounds && now >= start + std::chrono::milliseconds(roundsSent * resendGapMs)) {
            for (const UdpSocket& socket : sockets)
                for (const Endpoint& target : targets)
                    for (const std::string& probe : probes)
                        socket.sendTo(target, probe);
            ++roundsSent;
        }
        auto wakeAt = end;
        if (roundsSent < sendRounds)
            wakeAt = std::min(wakeAt, start + std::chrono::milliseconds(roundsSent * resendGapMs));
        const auto waitMs = std::chrono::ceil<std::chrono::milliseconds>(wakeAt - Clock::now()).count();
        for (std::size_t i : waitReadable(waited, static_cast<int>(std::max<long long>(0, waitMs)))) {
            const auto datagram = sockets[i].receive();
            if (datagram && take(std::string_view(datagram->bytes), datagram->from.host))
                return;
        }
    }
}

} // namespace

std::optional<std::vector<Endpoint>> probeTargetsFromEnvironment()
{
    const char* value = std::getenv("VX_ONVIF_PROBE_TARGETS");
    if (!value)
        return std::nullopt;
    std::vector<Endpoint> targets;
    std::string text = value;
    std::size_t p = 0;
    while (p <= text.size()) {
        std::size_t comma = text.find(',', p);
        if (comma == std::string::npos)
            comma = text.size();
        const std::string item = text.substr(p, comma - p);
        const std::size_t colon = item.rfind(':');
        if (colon != std::string::npos) {
            const int port = std::atoi(item.c_str() + colon + 1);
            Endpoint endpoint{item.substr(0, colon), static_cast<std::uint16_t>(port)};
            if (port > 0 && port < 65536 && isIpv4(endpoint.host))
                targets.push_back(endpoint);
        }
        p = comma + 1;
    }
    return targets;
}

std::uint16_t discoveryPort()
{
    if (const char* value = std::getenv("VX_ONVIF_DISCOVERY_PORT")) {
        const int port = std::atoi(value);
        if (port > 0 && port < 65536)
            return static_cast<std::uint16_t>(port);
    }
    return 3702;
}

std::vector<FoundCamera> scanCameras(const std::optional<std::vector<Endpoint>>& unicastTargets, int listenMs)
{
    std::vector<UdpSocket> sockets;
    std::vector<Endpoint> targets;
    if (unicastTargets) {
        targets = *unicastTargets;
        if (targets.empty())
            return {};
        UdpSocket socket;
        if (socket.valid())
            sockets.push_back(std::move(socket));
    } else {
        targets.push_back({multicastGroup, 3702});
        sockets = multicastSockets();
    }
    if (sockets.empty())
        return {};
    FoundCameras found;
    probeAndListen(sockets, targets, listenMs, [&](std::string_view datagram, const std::string& source) {
        for (const ProbeMatch& match : parseProbeMatches(datagram))
            found.add(match, source);
        return false;
    });
    return found.list();
}

std::vector<std::string> probeCamera(const Endpoint& camera, int waitMs)
{
    if (!isIpv4(camera.host))
        return {};
    std::vector<UdpSocket> sockets;
    sockets.emplace_back();
    if (!sockets.front().valid())
        return {};
    std::vector<std::string> xaddrs;
    probeAndListen(sockets, {camera}, waitMs, [&](std::string_view datagram, const std::string&) {
        for (const ProbeMatch& match : parseProbeMatches(datagram))
            if (!match.xaddrs.empty()) {
                xaddrs = match.xaddrs;
                return true;
            }
        return false;
    });
    return xaddrs;
}

} // namespace onvif
