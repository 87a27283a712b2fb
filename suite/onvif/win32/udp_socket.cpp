// Datagrams on Winsock, waited for with select; the interfaces from the IP
// helper's adapter list.
#include "udp_socket.h"

#include "onvif_addresses.h"

#include <winsock2.h>
#include <ws2tcpip.h>
#include <iphlpapi.h>
#include <mswsock.h>
#include <windows.h>

namespace onvif {

namespace {

// Winsock is started once, before the first socket, for the process's life.
void startWinsock()
{
    static const bool started = [] {
        WSADATA data;
        return ::WSAStartup(MAKEWORD(2, 2), &data) == 0;
    }();
    (void)started;
}

std::optional<sockaddr_in> toAddress(const Endpoint& endpoint)
{
    startWinsock();
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(endpoint.port);
    if (::inet_pton(AF_INET, endpoint.host.c_str(), &address.sin_addr) != 1)
        return std::nullopt;
    return address;
}

SOCKET socketOf(const UdpSocket& socket) { return static_cast<SOCKET>(socket.handle()); }

std::string addressText(const in_addr& address)
{
    char text[INET_ADDRSTRLEN] = {};
    ::inet_ntop(AF_INET, &address, text, sizeof text);
    return text;
}

SOCKET newSocket()
{
    startWinsock();
    const SOCKET s = ::socket(AF_INET, SOCK_DGRAM, IPPROTO_UDP);
    if (s == INVALID_SOCKET)
        return s;
    ::SetHandleInformation(reinterpret_cast<HANDLE>(s), HANDLE_FLAG_INHERIT, 0);
    // A probe that met a closed port must not fail the next read.
    BOOL report = FALSE;
    DWORD returned = 0;
    ::WSAIoctl(s, SIO_UDP_CONNRESET, &report, sizeof report, nullptr, 0, &returned, nullptr, nullptr);
    return s;
}

} // namespace

bool isIpv4(const std::string& host) { return toAddress({host, 0}).has_value(); }

UdpSocket::UdpSocket() : handle_(static_cast<std::intptr_t>(newSocket())) {}

UdpSocket::~UdpSocket()
{
    if (valid())
        ::closesocket(socketOf(*this));
}

UdpSocket::UdpSocket(UdpSocket&& other) noexcept : handle_(other.handle_)
{
    other.handle_ = static_cast<std::intptr_t>(INVALID_SOCKET);
}

bool UdpSocket::valid() const { return socketOf(*this) != INVALID_SOCKET; }

bool UdpSocket::bind(const Endpoint& local)
{
    const auto address = toAddress(local);
    return address
        && ::bind(socketOf(*this), reinterpret_cast<const sockaddr*>(&*address), sizeof *address) == 0;
}

std::uint16_t UdpSocket::localPort() const
{
    sockaddr_in address{};
    int size = sizeof address;
    if (::getsockname(socketOf(*this), reinterpret_cast<sockaddr*>(&address), &size) != 0)
        return 0;
    return ntohs(address.sin_port);
}

void UdpSocket::multicastFrom(const std::string& address)
{
    const auto local = toAddress({address, 0});
    if (!local)
        return;
    // Winsock takes the TTL and the loop flag as DWORDs.
    const DWORD ttl = 2;
    const DWORD loop = 0;
    ::setsockopt(socketOf(*this), IPPROTO_IP, IP_MULTICAST_IF, reinterpret_cast<const char*>(&local->sin_addr),
                 sizeof local->sin_addr);
    ::setsockopt(socketOf(*this), IPPROTO_IP, IP_MULTICAST_TTL, reinterpret_cast<const char*>(&ttl), sizeof ttl);
    ::setsockopt(socketOf(*this), IPPROTO_IP, IP_MULTICAST_LOOP, reinterpret_cast<const char*>(&loop), sizeof loop);
}

bool UdpSocket::sendTo(const Endpoint& to, std::string_view bytes) const
{
    const auto target = toAddress(to);
    return target
        && ::sendto(socketOf(*this), bytes.data(), static_cast<int>(bytes.size()), 0,
                    reinterpret_cast<const sockaddr*>(&*target), sizeof *target)
        == static_cast<int>(bytes.size());
}

std::optional<Datagram> UdpSocket::receive() const
{
    std::string buffer(65536, '\0');
    sockaddr_in from{};
    int fromSize = sizeof from;
    const int n = ::recvfrom(socketOf(*this), buffer.data(), static_cast<int>(buffer.size()), 0,
                             reinterpret_cast<sockaddr*>(&from), &fromSize);
    if (n <= 0)
        return std::nullopt;
    buffer.resize(static_cast<std::size_t>(n));
    return Datagram{std::move(buffer), {addressText(from.sin_addr), ntohs(from.sin_port)}};
}

std::vector<std::size_t> waitReadable(const std::vector<const UdpSocket*>& sockets, int waitMs)
{
    std::vector<std::size_t> ready;
    if (sockets.empty())
        return ready;
    fd_set readable;
    FD_ZERO(&readable);
    for (const UdpSocket* socket : sockets)
        FD_SET(socketOf(*socket), &readable);
    timeval wait{};
    wait.tv_sec = waitMs < 0 ? 0 : waitMs / 1000;
    wait.tv_usec = waitMs < 0 ? 0 : (waitMs % 1000) * 1000;
    if (::select(0, &readable, nullptr, nullptr, &wait) <= 0)
        return ready;
    for (std::size_t i = 0; i < sockets.size(); ++i)
        if (FD_ISSET(socketOf(*sockets[i]), &readable))
            ready.push_back(i);
    return ready;
}

std::vector<std::string> interfaceAddresses()
{
    std::vector<std::string> addresses;
    ULONG size = 16 * 1024;
    std::string buffer;
    ULONG result = ERROR_BUFFER_OVERFLOW;
    for (int attempt = 0; attempt < 3 && result == ERROR_BUFFER_OVERFLOW; ++attempt) {
        buffer.assign(size, '\0');
        result = ::GetAdaptersAddresses(AF_INET, GAA_FLAG_SKIP_ANYCAST | GAA_FLAG_SKIP_MULTICAST
                                            | GAA_FLAG_SKIP_DNS_SERVER,
                                        nullptr, reinterpret_cast<IP_ADAPTER_ADDRESSES*>(buffer.data()), &size);
    }
    if (result != NO_ERROR)
        return addresses;
    for (auto* adapter = reinterpret_cast<IP_ADAPTER_ADDRESSES*>(buffer.data()); adapter; adapter = adapter->Next) {
        if (adapter->OperStatus != IfOperStatusUp || adapter->IfType == IF_TYPE_SOFTWARE_LOOPBACK)
            continue;
        for (auto* unicast = adapter->FirstUnicastAddress; unicast; unicast = unicast->Next) {
            const sockaddr* address = unicast->Address.lpSockaddr;
            if (!address || address->sa_family != AF_INET)
                continue;
            const in_addr ip = reinterpret_cast<const sockaddr_in*>(address)->sin_addr;
            if ((ntohl(ip.s_addr) >> 24) == 127)
                continue;
            addresses.push_back(addressText(ip));
        }
    }
    return addresses;
}

} // namespace onvif
