#include "platform/end_request.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace vx::platform {
namespace {

int pipeEnds[2] = {-1, -1};

extern "C" void onEndSignal(int)
{
    const int saved = errno;
    const char byte = 1;
    // A full pipe already holds a request; the byte isn't needed then.
    [[maybe_unused]] const ssize_t written = ::write(pipeEnds[1], &byte, 1);
    errno = saved;
}

} // namespace

int endRequestDescriptor()
{
    if (pipeEnds[0] >= 0)
        return pipeEnds[0];
    if (::pipe2(pipeEnds, O_CLOEXEC | O_NONBLOCK) != 0) {
        pipeEnds[0] = pipeEnds[1] = -1;
        return -1;
    }
    struct sigaction action {};
    action.sa_handler = onEndSignal;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    ::sigaction(SIGTERM, &action, nullptr);
    ::sigaction(SIGINT, &action, nullptr);
    return pipeEnds[0];
}

void drainEndRequests()
{
    if (pipeEnds[0] < 0)
        return;
    char buffer[64];
    while (::read(pipeEnds[0], buffer, sizeof buffer) > 0) {
    }
}

} // namespace vx::platform
