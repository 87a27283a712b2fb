#pragma once
// Facts about this process that the core asks for. Starting, listing and
// ending other processes: process.h.

namespace vx::platform {

// The id the system knows this process by.
long currentProcessId();

} // namespace vx::platform
