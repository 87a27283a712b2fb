#pragma once
// IPv4 datagrams on the system's sockets: what WS-Discovery needs to probe
// from every network card and to read the answers, and what a fake camera
// needs to answer them.
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace onvif {

struct Endpoint {
    std::string host;   // IPv4
    std::uint16_t port = 0;
};

struct Datagram {
    std::string bytes;
    Endpoint from;
};

class UdpSocket {
public:
    // A socket that no child process inherits; not valid() when the system
    // refused one.
    UdpSocket();
    ~UdpSocket();
    UdpSocket(UdpSocket&& other) noexcept;
    UdpSocket(const UdpSocket&) = delete;
    UdpSocket& operator=(const UdpSocket&) = delete;
    UdpSocket& operator=(UdpSocket&&) = delete;

    bool valid() const;
    bool bind(const Endpoint& local);
    // The bound port, 0 when unknown.
    std::uint16_t localPort() const;
    // Multicast leaves through the card of `address`, with TTL 2, and is
    // not looped back to us.
    void multicastFrom(const std::string& address);
    bool sendTo(const Endpoint& to, std::string_view bytes) const;
    // One waiting datagram; nothing when none could be read.
    std::optional<Datagram> receive() const;

    std::intptr_t handle() const { return handle_; }

private:
    std::intptr_t handle_;
};

// The sockets (by index) that have a datagram waiting, after up to `waitMs`.
std::vector<std::size_t> waitReadable(const std::vector<const UdpSocket*>& sockets, int waitMs);

// The addresses of the up, non-loopback IPv4 interfaces.
std::vector<std::string> interfaceAddresses();

} // namespace onvif
