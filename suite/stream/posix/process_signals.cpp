#include "process_signals.h"

#include <csignal>

namespace vx::stream {

// A peer closing a socket mid-write (a camera's link) must not end the stream.
void watchPlatformSignals(void (*)(int))
{
    std::signal(SIGPIPE, SIG_IGN);
}

} // namespace vx::stream
