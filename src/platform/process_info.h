#pragma once
// Facts about processes that the core asks for. Starting, listing and ending
// other processes join this header later.

namespace vx::platform {

// The id the system knows this process by.
long currentProcessId();

} // namespace vx::platform
