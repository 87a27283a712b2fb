#pragma once
// Bits the window tests share: where a window's files are, a raw connection
// that speaks to a window below the public calls, a message and a stopwatch.
#include "platform/paths.h"
#include "platform/window_endpoint.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <poll.h>
#include <unistd.h>

#include <chrono>
#include <cinttypes>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <string>

namespace vx::test {

inline std::string hexHandle(platform::WindowHandle handle)
{
    char text[32];
    std::snprintf(text, sizeof text, "%016" PRIx64, handle);
    return text;
}

inline std::filesystem::path windowSocket(platform::WindowHandle handle)
{
    return platform::runtimeDirectory() / "windows" / hexHandle(handle);
}

inline std::filesystem::path windowRecord(platform::WindowHandle handle)
{
    return platform::runtimeDirectory() / "windows" / (hexHandle(handle) + ".rec");
}

// "ready <hex>" as the window_owner helper prints it.
inline platform::WindowHandle handleFromReadyLine(const std::string& line)
{
    if (line.rfind("ready ", 0) != 0)
        return 0;
    return std::strtoull(line.c_str() + 6, nullptr, 16);
}

// A connection to a window's socket that sends whatever bytes it is given.
class RawConnection {
public:
    explicit RawConnection(platform::WindowHandle handle)
    {
        fd_ = ::socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0);
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        const std::string path = windowSocket(handle).string();
        std::memcpy(address.sun_path, path.c_str(), path.size() + 1);
        connected_ = ::connect(fd_, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0;
    }
    ~RawConnection() { ::close(fd_); }
    RawConnection(const RawConnection&) = delete;
    RawConnection& operator=(const RawConnection&) = delete;

    bool connected() const { return connected_; }
    bool send(const std::string& bytes)
    {
        return ::send(fd_, bytes.data(), bytes.size(), MSG_NOSIGNAL)
            == static_cast<ssize_t>(bytes.size());
    }
    // What came back within the time: "eof", "timeout", or the bytes.
    std::string answer(int timeoutMs)
    {
        pollfd entry{fd_, POLLIN, 0};
        if (::poll(&entry, 1, timeoutMs) <= 0)
            return "timeout";
        char buffer[16];
        const ssize_t n = ::recv(fd_, buffer, sizeof buffer, 0);
        return n <= 0 ? "eof" : std::string(buffer, static_cast<std::size_t>(n));
    }

private:
    int fd_ = -1;
    bool connected_ = false;
};

// A copy-data datagram laid out by hand: kind 1, dwData, cbData and the
// declared payload length little-endian, then the payload.
inline std::string copyDataBytes(std::uint64_t dwData, std::uint32_t length, const std::string& payload,
                                 std::uint32_t cbData = 0)
{
    std::string bytes(1, '\x01');
    for (int i = 0; i < 8; ++i)
        bytes.push_back(static_cast<char>(dwData >> (8 * i)));
    for (int i = 0; i < 4; ++i)
        bytes.push_back(static_cast<char>(cbData >> (8 * i)));
    for (int i = 0; i < 4; ++i)
        bytes.push_back(static_cast<char>(length >> (8 * i)));
    return bytes + payload;
}

inline platform::CopyDataMessage makeMessage(std::uint64_t dwData, const std::string& text)
{
    platform::CopyDataMessage message;
    message.dwData = dwData;
    message.payload.assign(text.begin(), text.end());
    return message;
}

inline long long millisecondsSince(std::chrono::steady_clock::time_point start)
{
    return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - start).count();
}

} // namespace vx::test
