// The sending side of window endpoints: lookup by class and title, the owner
// of a window, and the synchronous messages.
//
// Every message takes a fresh connection. A window whose owner is gone has
// no listener on its socket (or no socket at all), so connect() fails at once
// and the send with it; it never waits out the timeout.
#include "platform/posix/unique_fd.h"
#include "platform/posix/window_files.h"
#include "platform/posix/window_wire.h"

#include <cerrno>
#include <cstring>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>

#include <chrono>
#include <thread>

namespace vx::platform {
namespace {

using posix::UniqueFd;
using Clock = std::chrono::steady_clock;

int millisecondsLeft(Clock::time_point deadline)
{
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now());
    return static_cast<int>(std::max<long long>(0, left.count()));
}

// Waits for `events` on fd until the deadline.
bool waitFor(int fd, short events, Clock::time_point deadline)
{
    for (;;) {
        pollfd entry{fd, events, 0};
        const int rc = ::poll(&entry, 1, millisecondsLeft(deadline));
        if (rc < 0 && errno == EINTR)
            continue;
        return rc > 0;
    }
}

bool connectBefore(int fd, const std::string& path, Clock::time_point deadline)
{
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.size() >= sizeof address.sun_path)
        return false;
    std::memcpy(address.sun_path, path.c_str(), path.size() + 1);
    for (;;) {
        if (::connect(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0)
            return true;
        if (errno == EINTR)
            continue;
        // A full backlog answers EAGAIN on a non-blocking socket: the owner is
        // alive but behind; try again until the deadline.
        if (errno != EAGAIN || Clock::now() >= deadline)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
}

// Sends one datagram to the window and waits for its one-byte answer.
bool exchange(WindowHandle window, const std::vector<char>& datagram, int timeoutMs, char& answer)
{
    if (window == 0 || datagram.size() > posix::kMaxDatagram)
        return false;
    const std::string folder = posix::windowsFolder();
    if (folder.empty())
        return false;
    const auto deadline = Clock::now() + std::chrono::milliseconds(std::max(0, timeoutMs));
    UniqueFd fd(::socket(AF_UNIX, SOCK_SEQPACKET | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
    if (!fd.valid() || !connectBefore(fd.get(), posix::socketPath(folder, window), deadline))
        return false;
    for (;;) {
        const ssize_t sent = ::send(fd.get(), datagram.data(), datagram.size(), MSG_NOSIGNAL);
        if (sent == static_cast<ssize_t>(datagram.size()))
            break;
        if (sent >= 0 || (errno != EINTR && errno != EAGAIN && errno != EWOULDBLOCK))
            return false;
        if (errno != EINTR && !waitFor(fd.get(), POLLOUT, deadline))
            return false;
    }
    // The answer, or the end of the connection when the receiver dropped the
    // message or died.
    for (;;) {
        if (!waitFor(fd.get(), POLLIN, deadline))
            return false;
        const ssize_t got = ::recv(fd.get(), &answer, 1, 0);
        if (got == 1)
            return true;
        if (got < 0 && (errno == EINTR || errno == EAGAIN || errno == EWOULDBLOCK))
            continue;
        return false;
    }
}

bool matches(const std::string& wanted, const std::string& value)
{
    return wanted.empty() || wanted == value;
}

} // namespace

WindowHandle findWindow(const std::string& className, const std::string& title)
{
    const std::string folder = posix::windowsFolder();
    if (folder.empty())
        return 0;
    for (const WindowHandle handle : posix::listRecords(folder)) {
        const auto record = posix::readRecord(posix::recordPath(folder, handle));
        if (!record)
            continue;   // removed meanwhile, or not ours to judge
        if (!posix::ownerAlive(*record)) {
            posix::removeWindowFiles(folder, handle);
            continue;
        }
        if (matches(className, record->className) && matches(title, record->title))
            return handle;
    }
    return 0;
}

long windowOwnerPid(WindowHandle window)
{
    const std::string folder = posix::windowsFolder();
    if (window == 0 || folder.empty())
        return 0;
    const auto record = posix::readRecord(posix::recordPath(folder, window));
    if (!record)
        return 0;
    if (!posix::ownerAlive(*record)) {
        posix::removeWindowFiles(folder, window);
        return 0;
    }
    return record->pid;
}

bool sendCopyData(WindowHandle window, const CopyDataMessage& message, int timeoutMs,
                  bool* handlerResult)
{
    if (message.payload.size() > posix::kMaxPayload)
        return false;
    char answer = 0;
    if (!exchange(window, posix::encodeCopyData(message), timeoutMs, answer))
        return false;
    if (handlerResult)
        *handlerResult = answer != 0;
    return true;
}

bool showWindow(WindowHandle window, ShowCommand command, int timeoutMs)
{
    char answer = 0;
    return exchange(window, posix::encodeShow(command), timeoutMs, answer);
}

bool setForegroundWindow(WindowHandle window, int timeoutMs)
{
    char answer = 0;
    return exchange(window, posix::encodeForeground(), timeoutMs, answer);
}

} // namespace vx::platform
