#pragma once
// The running program's file version: the four numbers of its version
// resource joined with ".". Where programs carry no version resource (here)
// the version the build was made with stands for it.
#include <string>

namespace vx::platform {

// On failure one of "Unknown version (FindResource failed)", "(LoadResource
// failed)", "(LockResource failed)", "(VerQueryValue failed)".
std::string programVersionText(const std::string& builtIn);

} // namespace vx::platform
