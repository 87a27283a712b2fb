#pragma once
// An operator's request to end the process from outside (on POSIX: SIGTERM
// or SIGINT, as `kill` sends it). The manager turns it into the same
// teardown as its menu's "Выход", run from the event loop.
namespace vx::platform {

// Installs the handlers once and returns a descriptor that becomes readable
// when a request arrives; -1 when that can't be had. The handler only writes
// one byte to a pipe, so it is safe at any moment.
int endRequestDescriptor();
// Reads away what has arrived, so the descriptor isn't readable again until
// the next request.
void drainEndRequests();

} // namespace vx::platform
