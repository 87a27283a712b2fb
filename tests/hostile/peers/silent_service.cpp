// silent_service: a service that takes connections and never answers.
//
//   silent_service <count>
//
// Listens on <count> ports of 127.0.0.1 (chosen by the system), prints them
// on one line, blank-separated, then accepts every connection and holds it
// open without reading a byte or writing one, until its standard input ends
// or it is killed. At most 4096 connections are held; past that the oldest
// is closed.
#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdlib>
#include <deque>
#include <iostream>
#include <vector>

int main(int argc, char* argv[])
{
    const int count = argc > 1 ? std::atoi(argv[1]) : 1;
    std::vector<pollfd> entries;
    for (int i = 0; i < count; ++i) {
        const int fd = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t length = sizeof address;
        if (fd < 0 || ::bind(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0 ||
            ::listen(fd, SOMAXCONN) != 0 || ::getsockname(fd, reinterpret_cast<sockaddr*>(&address), &length) != 0) {
            std::cerr << "silent_service: can't listen" << std::endl;
            return 1;
        }
        entries.push_back({fd, POLLIN, 0});
        std::cout << (i ? " " : "") << ntohs(address.sin_port);
    }
    std::cout << std::endl;
    entries.push_back({STDIN_FILENO, POLLIN, 0});

    std::deque<int> held;
    for (;;) {
        if (::poll(entries.data(), entries.size(), -1) < 0)
            continue;
        if (entries.back().revents) {
            char byte;
            if (::read(STDIN_FILENO, &byte, 1) <= 0)
                return 0;
        }
        for (std::size_t i = 0; i + 1 < entries.size(); ++i) {
            if (!entries[i].revents)
                continue;
            const int connection = ::accept4(entries[i].fd, nullptr, nullptr, SOCK_CLOEXEC);
            if (connection < 0)
                continue;
            held.push_back(connection);
            if (held.size() > 4096) {
                ::close(held.front());
                held.pop_front();
            }
        }
    }
}
