// The POSIX side of a window endpoint: a listening SOCK_SEQPACKET socket.
//
// Each message comes on a connection of its own: the sender connects, sends
// one datagram and waits for the one-byte answer. The listening socket and
// every accepted connection whose datagram hasn't come yet sit in one epoll
// set; that set's descriptor is the one the owner polls, so a connection
// accepted before its sender got to send never stalls the caller's thread.
// The answer is sent only after the handler returned.
#include "platform/posix/unique_fd.h"
#include "platform/posix/window_files.h"
#include "platform/posix/window_wire.h"
#include "platform/process_info.h"

#include <cerrno>
#include <cstring>
#include <sys/epoll.h>
#include <sys/random.h>
#include <sys/socket.h>
#include <sys/un.h>

#include <atomic>
#include <chrono>
#include <deque>
#include <map>

namespace vx::platform {
namespace {

using posix::UniqueFd;

// Connections whose datagram hasn't arrived or hasn't been handled; past
// this many the oldest of the peer holding the most is dropped, so a peer
// that connects and never sends, or floods us, can't pile them up nor crowd
// out the others.
constexpr std::size_t kMaxWaitingConnections = 64;
// Connections taken from the backlog in one go.
constexpr std::size_t kAcceptsPerTurn = 256;
constexpr int kBindAttempts = 16;
// How long one dispatchPending() call may handle messages.
constexpr std::chrono::milliseconds kDispatchBudget{10};

WindowHandle newHandle()
{
    WindowHandle handle = 0;
    if (::getrandom(&handle, sizeof handle, 0) != static_cast<ssize_t>(sizeof handle)) {
        // No entropy to be had: the pid and a counter are unique enough, and
        // bind() below refuses a name that is taken anyway.
        static std::atomic<std::uint32_t> counter{0};
        handle = static_cast<WindowHandle>(currentProcessId()) << 32 | ++counter;
    }
    return handle == 0 ? 1 : handle;
}

bool makeAddress(const std::string& path, sockaddr_un& address)
{
    std::memset(&address, 0, sizeof address);
    address.sun_family = AF_UNIX;
    if (path.size() >= sizeof address.sun_path)
        return false;
    std::memcpy(address.sun_path, path.c_str(), path.size() + 1);
    return true;
}

// An accepted connection whose message hasn't been handled yet.
struct Waiting {
    UniqueFd connection;
    pid_t peer = 0;   // the sending process, 0 when unknown
};

class PosixWindowEndpoint final : public WindowEndpoint {
public:
    ~PosixWindowEndpoint() override
    {
        if (handle_ != 0)
            posix::removeWindowFiles(folder_, handle_);
    }

    bool open(const std::string& className, const std::string& title)
    {
        folder_ = posix::windowsFolder();
        if (folder_.empty())
            return false;
        listen_.reset(::socket(AF_UNIX, SOCK_SEQPACKET | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
        epoll_.reset(::epoll_create1(EPOLL_CLOEXEC));
        if (!listen_.valid() || !epoll_.valid())
            return false;
        for (int attempt = 0; attempt < kBindAttempts && handle_ == 0; ++attempt) {
            const WindowHandle candidate = newHandle();
            sockaddr_un address;
            if (!makeAddress(posix::socketPath(folder_, candidate), address))
                return false;
            if (::bind(listen_.get(), reinterpret_cast<sockaddr*>(&address), sizeof address) == 0)
                handle_ = candidate;
            else if (errno != EADDRINUSE)
                return false;
        }
        if (handle_ == 0 || ::listen(listen_.get(), SOMAXCONN) != 0 || !watch(listen_.get()))
            return false;
        record_.pid = currentProcessId();
        record_.startTime = posix::processStartTime(record_.pid);
        record_.className = className;
        record_.title = title;
        return posix::writeRecord(folder_, handle_, record_);
    }

    WindowHandle handle() const override { return handle_; }
    int pollDescriptor() const override { return epoll_.get(); }

    int dispatchPending() override
    {
        int handled = 0;
        // Bounded in count and in time, so a peer flooding us can't keep the
        // caller here: what is left waits for the next call, and the caller's
        // other events (the window's) come first. The set is level-triggered,
        // so the descriptor stays readable while anything waits.
        const auto deadline = std::chrono::steady_clock::now() + kDispatchBudget;
        for (int round = 0; round < 64; ++round) {
            epoll_event events[16];
            const int count = ::epoll_wait(epoll_.get(), events, 16, 0);
            if (count <= 0)
                break;
            for (int i = 0; i < count; ++i) {
                handled += serve(events[i].data.fd) ? 1 : 0;
                if (std::chrono::steady_clock::now() >= deadline)
                    return handled;
            }
        }
        return handled;
    }

    bool dispatchOne(int timeoutMs) override
    {
        using Clock = std::chrono::steady_clock;
        const auto deadline = Clock::now() + std::chrono::milliseconds(timeoutMs);
        for (;;) {
            int wait = -1;
            if (timeoutMs >= 0) {
                const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now());
                wait = static_cast<int>(std::max<long long>(0, left.count()));
            }
            epoll_event event;
            const int count = ::epoll_wait(epoll_.get(), &event, 1, wait);
            if (count < 0 && errno == EINTR)
                continue;
            if (count <= 0)
                return false;
            if (serve(event.data.fd))
                return true;
        }
    }

    void setTitle(const std::string& title) override
    {
        record_.title = title;
        posix::writeRecord(folder_, handle_, record_);
    }

private:
    bool watch(int fd)
    {
        epoll_event event{};
        event.events = EPOLLIN;
        event.data.fd = fd;
        return ::epoll_ctl(epoll_.get(), EPOLL_CTL_ADD, fd, &event) == 0;
    }

    // Takes one ready descriptor of the set; true when a message was handled.
    bool serve(int fd)
    {
        if (fd == listen_.get()) {
            acceptWaiting();
            return false;
        }
        for (auto it = waiting_.begin(); it != waiting_.end(); ++it) {
            if (it->connection.get() != fd)
                continue;
            Waiting waiting = std::move(*it);
            waiting_.erase(it);
            return receive(std::move(waiting));
        }
        return false;   // closed meanwhile by a nested dispatch
    }

    void acceptWaiting()
    {
        // A bounded number: a peer that connects faster than we accept would
        // otherwise keep us in this loop for good. The rest stay in the
        // backlog, and the listening socket stays readable.
        for (std::size_t taken = 0; taken < kAcceptsPerTurn; ++taken) {
            UniqueFd connection(::accept4(listen_.get(), nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC));
            if (!connection.valid())
                return;
            if (!watch(connection.get()))
                continue;
            ucred credentials{};
            socklen_t length = sizeof credentials;
            if (::getsockopt(connection.get(), SOL_SOCKET, SO_PEERCRED, &credentials, &length) != 0)
                credentials.pid = 0;
            waiting_.push_back({std::move(connection), credentials.pid});
            if (waiting_.size() > kMaxWaitingConnections)
                dropFromBusiestPeer();
        }
    }

    // Drops the oldest waiting connection of the peer that holds the most.
    void dropFromBusiestPeer()
    {
        std::map<pid_t, std::size_t> held;
        pid_t busiest = 0;
        std::size_t most = 0;
        for (const Waiting& waiting : waiting_) {
            const std::size_t count = ++held[waiting.peer];
            if (count > most) {
                most = count;
                busiest = waiting.peer;
            }
        }
        for (auto it = waiting_.begin(); it != waiting_.end(); ++it) {
            if (it->peer == busiest) {
                forget(it->connection);
                waiting_.erase(it);
                return;
            }
        }
    }

    void forget(UniqueFd& connection)
    {
        ::epoll_ctl(epoll_.get(), EPOLL_CTL_DEL, connection.get(), nullptr);
        connection.reset();
    }

    // Reads the connection's datagram and handles it. A connection that has
    // nothing yet goes back to waiting; a malformed datagram, one cut short
    // or an empty connection is closed unanswered, which the sender sees as
    // a failed send.
    bool receive(Waiting waiting)
    {
        UniqueFd& connection = waiting.connection;
        buffer_.resize(posix::kMaxDatagram + 1);
        iovec part{buffer_.data(), buffer_.size()};
        msghdr header{};
        header.msg_iov = &part;
        header.msg_iovlen = 1;
        ssize_t size;
        do {
            size = ::recvmsg(connection.get(), &header, MSG_DONTWAIT);
        } while (size < 0 && errno == EINTR);
        if (size < 0 && (errno == EAGAIN || errno == EWOULDBLOCK)) {
            waiting_.push_back(std::move(waiting));
            return false;
        }
        ::epoll_ctl(epoll_.get(), EPOLL_CTL_DEL, connection.get(), nullptr);
        if (size <= 0 || (header.msg_flags & MSG_TRUNC))
            return false;
        const auto message = posix::decodeDatagram(buffer_.data(), static_cast<std::size_t>(size));
        if (!message)
            return false;
        char answer = 1;
        if (const auto* copy = std::get_if<CopyDataMessage>(&*message)) {
            answer = onCopyData && onCopyData(*copy) ? 1 : 0;
        } else if (const auto* show = std::get_if<ShowCommand>(&*message)) {
            if (onShow)
                onShow(*show);
        } else if (onForeground) {
            onForeground();
        }
        // The sender may have given up waiting; its end is then closed and
        // the answer goes nowhere (MSG_NOSIGNAL: no SIGPIPE for that).
        ::send(connection.get(), &answer, 1, MSG_NOSIGNAL | MSG_DONTWAIT);
        return true;
    }

    std::string folder_;
    WindowHandle handle_ = 0;
    UniqueFd listen_;
    UniqueFd epoll_;
    posix::WindowRecord record_;
    std::deque<Waiting> waiting_;
    std::vector<char> buffer_;
};

} // namespace

std::unique_ptr<WindowEndpoint> createWindowEndpoint(const std::string& className,
                                                     const std::string& title)
{
    auto endpoint = std::make_unique<PosixWindowEndpoint>();
    if (!endpoint->open(className, title))
        return nullptr;
    return endpoint;
}

} // namespace vx::platform
