#include "discovery_socket.h"

#include <arpa/inet.h>
#include <ifaddrs.h>
#include <net/if.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>

namespace onvif {

namespace {

using Clock = std::chrono::steady_clock;

constexpr const char* multicastGroup = "239.255.255.250";
constexpr int resendGapMs = 150;
constexpr int sendRounds = 3;

class Socket {
public:
    Socket() : fd_(::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0)) {}
    ~Socket()
    {
        if (fd_ >= 0)
            ::close(fd_);
    }
    Socket(Socket&& other) noexcept : fd_(other.fd_) { other.fd_ = -1; }
    Socket(const Socket&) = delete;
    Socket& operator=(const Socket&) = delete;
    int fd() const { return fd_; }
    bool valid() const { return fd_ >= 0; }

private:
    int fd_;
};

std::optional<sockaddr_in> toAddress(const Endpoint& endpoint)
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(endpoint.port);
    if (inet_pton(AF_INET, endpoint.host.c_str(), &address.sin_addr) != 1)
        return std::nullopt;
    return address;
}

// One socket per up, non-loopback IPv4 interface, each bound to its
// address and sending its multicast there; one plain socket when there is
// none, which reaches the default route.
std::vector<Socket> multicastSockets()
{
    std::vector<Socket> sockets;
    ifaddrs* list = nullptr;
    if (::getifaddrs(&list) == 0) {
        for (ifaddrs* i = list; i; i = i->ifa_next) {
            if (!i->ifa_addr || i->ifa_addr->sa_family != AF_INET)
                continue;
            if (!(i->ifa_flags & IFF_UP) || (i->ifa_flags & IFF_LOOPBACK))
                continue;
            Socket socket;
            if (!socket.valid())
                continue;
            sockaddr_in local = *reinterpret_cast<const sockaddr_in*>(i->ifa_addr);
            local.sin_port = 0;
            if (::bind(socket.fd(), reinterpret_cast<const sockaddr*>(&local), sizeof local) != 0)
                continue;
            ::setsockopt(socket.fd(), IPPROTO_IP, IP_MULTICAST_IF, &local.sin_addr, sizeof local.sin_addr);
            const unsigned char ttl = 2;
            const unsigned char loop = 0;
            ::setsockopt(socket.fd(), IPPROTO_IP, IP_MULTICAST_TTL, &ttl, sizeof ttl);
            ::setsockopt(socket.fd(), IPPROTO_IP, IP_MULTICAST_LOOP, &loop, sizeof loop);
            sockets.push_back(std::move(socket));
        }
        ::freeifaddrs(list);
    }
    if (sockets.empty()) {
        Socket socket;
        if (socket.valid())
            sockets.push_back(std::move(socket));
    }
    return sockets;
}

// Sends every probe to every target from every socket, a few rounds apart,
// and hands each datagram that comes back, with its source address, to
// `take` until `listenMs` has passed or `take` says it has enough.
template <class Take>
void probeAndListen(const std::vector<Socket>& sockets, const std::vector<sockaddr_in>& targets, int listenMs,
                    Take take)
{
    const std::string probes[2] = {probeMessage(newMessageId(), ProbeType::networkVideoTransmitter),
                                   probeMessage(newMessageId(), ProbeType::device)};
    std::vector<pollfd> polls;
    for (const Socket& socket : sockets)
        polls.push_back({socket.fd(), POLLIN, 0});
    const auto start = Clock::now();
    const auto end = start + std::chrono::milliseconds(listenMs);
    int roundsSent = 0;
    std::string buffer(65536, '\0');
    for (;;) {
        const auto now = Clock::now();
        if (now >= end)
            return;
        if (roundsSent < sendRounds && now >= start + std::chrono::milliseconds(roundsSent * resendGapMs)) {
            for (const Socket& socket : sockets)
                for (const sockaddr_in& target : targets)
                    for (const std::string& probe : probes)
                        ::sendto(socket.fd(), probe.data(), probe.size(), 0,
                                 reinterpret_cast<const sockaddr*>(&target), sizeof target);
            ++roundsSent;
        }
        auto wakeAt = end;
        if (roundsSent < sendRounds)
            wakeAt = std::min(wakeAt, start + std::chrono::milliseconds(roundsSent * resendGapMs));
        const auto waitMs = std::chrono::ceil<std::chrono::milliseconds>(wakeAt - Clock::now()).count();
        if (::poll(polls.data(), polls.size(), static_cast<int>(std::max<long long>(0, waitMs))) <= 0)
            continue;
        for (pollfd& p : polls) {
            if (!(p.revents & POLLIN))
                continue;
            sockaddr_in from{};
            socklen_t fromSize = sizeof from;
            const ssize_t n = ::recvfrom(p.fd, buffer.data(), buffer.size(), 0,
                                         reinterpret_cast<sockaddr*>(&from), &fromSize);
            if (n <= 0)
                continue;
            char source[INET_ADDRSTRLEN] = {};
            ::inet_ntop(AF_INET, &from.sin_addr, source, sizeof source);
            if (take(std::string_view(buffer.data(), static_cast<std::size_t>(n)), std::string(source)))
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
            if (port > 0 && port < 65536 && toAddress(endpoint))
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
    std::vector<Socket> sockets;
    std::vector<sockaddr_in> targets;
    if (unicastTargets) {
        for (const Endpoint& endpoint : *unicastTargets)
            if (auto address = toAddress(endpoint))
                targets.push_back(*address);
        if (targets.empty())
            return {};
        Socket socket;
        if (socket.valid())
            sockets.push_back(std::move(socket));
    } else {
        if (auto group = toAddress({multicastGroup, 3702}))
            targets.push_back(*group);
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
    const auto target = toAddress(camera);
    if (!target)
        return {};
    std::vector<Socket> sockets;
    sockets.emplace_back();
    if (!sockets.front().valid())
        return {};
    std::vector<std::string> xaddrs;
    probeAndListen(sockets, {*target}, waitMs, [&](std::string_view datagram, const std::string&) {
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
