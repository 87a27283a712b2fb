// garbage_camera: a camera on one loopback address that answers everything
// with a megabyte of garbage.
//
//   garbage_camera <loopback address>
//
// Prints "<udp port> <tcp port>" once both listen. Each datagram that comes
// to the UDP port (a discovery probe) is answered with 1 MiB of random bytes
// in datagrams of 60000 bytes, each opening like a ProbeMatches answer and
// never closing it; each connection to the TCP port (the device service)
// gets "HTTP/1.1 200 OK" announcing 1 MiB of SOAP and then random bytes,
// after which the connection is closed. Ends when its standard input ends or
// it is killed. The address must be a loopback one: nothing leaves the
// machine.
#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

#include <cstring>
#include <iostream>
#include <random>
#include <string>

namespace {

constexpr std::size_t megabyte = 1 << 20;
constexpr std::size_t datagramSize = 60000;

int listening(int type, const std::string& host, std::uint16_t& port)
{
    const int fd = ::socket(AF_INET, type | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    socklen_t length = sizeof address;
    if (fd < 0 || ::inet_pton(AF_INET, host.c_str(), &address.sin_addr) != 1 ||
        (ntohl(address.sin_addr.s_addr) >> 24) != 127 ||
        ::bind(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0 ||
        (type == SOCK_STREAM && ::listen(fd, 64) != 0) ||
        ::getsockname(fd, reinterpret_cast<sockaddr*>(&address), &length) != 0)
        return -1;
    port = ntohs(address.sin_port);
    return fd;
}

void sendAll(int fd, const char* data, std::size_t size)
{
    while (size > 0) {
        const ssize_t sent = ::send(fd, data, size, MSG_NOSIGNAL);
        if (sent <= 0)
            return;
        data += sent;
        size -= static_cast<std::size_t>(sent);
    }
}

} // namespace

int main(int argc, char* argv[])
{
    const std::string host = argc > 1 ? argv[1] : "127.0.0.1";
    std::uint16_t udpPort = 0, tcpPort = 0;
    const int udp = listening(SOCK_DGRAM, host, udpPort);
    const int tcp = listening(SOCK_STREAM, host, tcpPort);
    if (udp < 0 || tcp < 0) {
        std::cerr << "garbage_camera: can't listen on " << host << std::endl;
        return 1;
    }
    std::mt19937 random(20261124);
    std::string garbage(megabyte, '\0');
    for (char& c : garbage)
        c = static_cast<char>(random());
    const std::string opening = "<?xml version=\"1.0\"?><s:Envelope><s:Body><d:ProbeMatches><d:ProbeMatch><a:Address>";
    std::cout << udpPort << " " << tcpPort << std::endl;

    pollfd entries[3] = {{udp, POLLIN, 0}, {tcp, POLLIN, 0}, {STDIN_FILENO, POLLIN, 0}};
    for (;;) {
        if (::poll(entries, 3, -1) < 0)
            continue;
        if (entries[2].revents) {
            char byte;
            if (::read(STDIN_FILENO, &byte, 1) <= 0)
                return 0;
        }
        if (entries[0].revents) {
            char probe[65536];
            sockaddr_in from{};
            socklen_t length = sizeof from;
            if (::recvfrom(udp, probe, sizeof probe, 0, reinterpret_cast<sockaddr*>(&from), &length) >= 0) {
                for (std::size_t at = 0; at < megabyte; at += datagramSize) {
                    std::string datagram = opening + garbage.substr(at, datagramSize - opening.size());
                    ::sendto(udp, datagram.data(), datagram.size(), 0, reinterpret_cast<sockaddr*>(&from), length);
                }
            }
        }
        if (entries[1].revents) {
            const int connection = ::accept4(tcp, nullptr, nullptr, SOCK_CLOEXEC);
            if (connection >= 0) {
                // A reader that stops reading doesn't hold this camera for long.
                const timeval limit{3, 0};
                ::setsockopt(connection, SOL_SOCKET, SO_SNDTIMEO, &limit, sizeof limit);
                char request[4096];
                pollfd wait{connection, POLLIN, 0};
                if (::poll(&wait, 1, 1000) > 0)
                    (void)::recv(connection, request, sizeof request, MSG_DONTWAIT);
                const std::string head = "HTTP/1.1 200 OK\r\nContent-Type: application/soap+xml\r\nContent-Length: " +
                                         std::to_string(megabyte) + "\r\nConnection: close\r\n\r\n";
                sendAll(connection, head.data(), head.size());
                sendAll(connection, garbage.data(), garbage.size());
                ::close(connection);
            }
        }
    }
}
