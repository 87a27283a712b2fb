#pragma once
// How an operator's end request from outside reaches the stream (SIGTERM,
// SIGINT; Ctrl+C or Ctrl+Break in a console), and, on POSIX, that a peer
// closing a socket mid-write (a camera's link) doesn't end the process.
#include <atomic>

namespace vx::stream {

// Installs the handlers; `requested` turns true when a request arrives. It
// must outlive the process's handlers (a static).
void watchEndRequests(std::atomic<bool>& requested);

// The platform's own part: `onEnd` for its further end signals (Ctrl+Break
// on Windows), and SIGPIPE ignored on POSIX.
void watchPlatformSignals(void (*onEnd)(int));

} // namespace vx::stream
