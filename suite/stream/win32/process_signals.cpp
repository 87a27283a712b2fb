#include "process_signals.h"

#include <csignal>

namespace vx::stream {

// Ctrl+Break in the stream's console asks for the end as Ctrl+C does.
void watchPlatformSignals(void (*onEnd)(int))
{
    std::signal(SIGBREAK, onEnd);
}

} // namespace vx::stream
