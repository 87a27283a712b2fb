// Datagrams on BSD sockets, waited for with poll.
#include "udp_socket.h"

#include "onvif_addresses.h"

#include <arpa/inet.h>
#include <ifaddrs.h>
#include <net/if.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace onvif {

namespace {

std::optional<sockaddr_in> toAddress(const Endpoint& endpoint)
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(endpoint.port);
    if (inet_pton(AF_INET, endpoint.host.c_str(), &address.sin_addr) != 1)
        return std::nullopt;
    return address;
}

int fdOf(const UdpSocket& socket) { return static_cast<int>(socket.handle()); }

} // namespace

bool isIpv4(const std::string& host) { return toAddress({host, 0}).has_value(); }

UdpSocket::UdpSocket() : handle_(::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0)) {}

UdpSocket::~UdpSocket()
{
    if (handle_ >= 0)
        ::close(static_cast<int>(handle_));
}

UdpSocket::UdpSocket(UdpSocket&& other) noexcept : handle_(other.handle_) { other.handle_ = -1; }

bool UdpSocket::valid() const { return handle_ >= 0; }

bool UdpSocket::bind(const Endpoint& local)
{
    const auto address = toAddress(local);
    return address && ::bind(fdOf(*this), reinterpret_cast<const sockaddr*>(&*address), sizeof *address) == 0;
}

std::uint16_t UdpSocket::localPort() const
{
    sockaddr_in address{};
    socklen_t size = sizeof address;
    if (::getsockname(fdOf(*this), reinterpret_cast<sockaddr*>(&address), &size) != 0)
        return 0;
    return ntohs(address.sin_port);
}

void UdpSocket::multicastFrom(const std::string& address)
{
    const auto local = toAddress({address, 0});
    if (!local)
        return;
    const unsigned char ttl = 2;
    const unsigned char loop = 0;
    ::setsockopt(fdOf(*this), IPPROTO_IP, IP_MULTICAST_IF, &local->sin_addr, sizeof local->sin_addr);
    ::setsockopt(fdOf(*this), IPPROTO_IP, IP_MULTICAST_TTL, &ttl, sizeof ttl);
    ::setsockopt(fdOf(*this), IPPROTO_IP, IP_MULTICAST_LOOP, &loop, sizeof loop);
}

bool UdpSocket::sendTo(const Endpoint& to, std::string_view bytes) const
{
    const auto target = toAddress(to);
    return target
        && ::sendto(fdOf(*this), bytes.data(), bytes.size(), 0, reinterpret_cast<const sockaddr*>(&*target),
                    sizeof *target)
        == static_cast<ssize_t>(bytes.size());
}

std::optional<Datagram> UdpSocket::receive() const
{
    std::string buffer(65536, '\0');
    sockaddr_in from{};
    socklen_t fromSize = sizeof from;
    const ssize_t n =
        ::recvfrom(fdOf(*this), buffer.data(), buffer.size(), 0, reinterpret_cast<sockaddr*>(&from), &fromSize);
    if (n <= 0)
        return std::nullopt;
    buffer.resize(static_cast<std::size_t>(n));
    char source[INET_ADDRSTRLEN] = {};
    ::inet_ntop(AF_INET, &from.sin_addr, source, sizeof source);
    return Datagram{std::move(buffer), {source, ntohs(from.sin_port)}};
}

std::vector<std::size_t> waitReadable(const std::vector<const UdpSocket*>& sockets, int waitMs)
{
    std::vector<pollfd> polls;
    for (const UdpSocket* socket : sockets)
        polls.push_back({fdOf(*socket), POLLIN, 0});
    std::vector<std::size_t> ready;
    if (::poll(polls.data(), polls.size(), waitMs < 0 ? 0 : waitMs) <= 0)
        return ready;
    for (std::size_t i = 0; i < polls.size(); ++i)
        if (polls[i].revents & POLLIN)
            ready.push_back(i);
    return ready;
}

std::vector<std::string> interfaceAddresses()
{
    std::vector<std::string> addresses;
    ifaddrs* list = nullptr;
    if (::getifaddrs(&list) != 0)
        return addresses;
    for (ifaddrs* i = list; i; i = i->ifa_next) {
        if (!i->ifa_addr || i->ifa_addr->sa_family != AF_INET)
            continue;
        if (!(i->ifa_flags & IFF_UP) || (i->ifa_flags & IFF_LOOPBACK))
            continue;
        char text[INET_ADDRSTRLEN] = {};
        ::inet_ntop(AF_INET, &reinterpret_cast<const sockaddr_in*>(i->ifa_addr)->sin_addr, text, sizeof text);
        addresses.push_back(text);
    }
    ::freeifaddrs(list);
    return addresses;
}

} // namespace onvif
