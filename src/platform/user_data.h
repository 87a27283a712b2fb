#pragma once
// The per-user data folder of the manager, where it keeps what belongs to
// the user rather than to one installation (e.g. where it last ran from).
// Here it is $XDG_DATA_HOME/vexlane when that is an absolute path, else
// $HOME/.local/share/vexlane; the first platform keeps it below the user's
// application data folder.
#include <filesystem>

namespace vx::platform {

// The folder, made when missing. Empty when it can't be had.
std::filesystem::path userDataDirectory();

} // namespace vx::platform
