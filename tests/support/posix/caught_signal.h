#pragma once
// Whether a process has its own handler for a signal yet, as the kernel
// shows it (the SigCgt mask in /proc/<pid>/status). A test that ends the
// manager with SIGTERM waits for this first: a slow start (a sanitized build
// on a loaded machine) would otherwise take the default action, exit 143.

namespace vx::test {

// Waits, bounded by timeoutMs (scaled), until process pid catches signal.
bool waitUntilCaught(long pid, int signal, int timeoutMs);

} // namespace vx::test
