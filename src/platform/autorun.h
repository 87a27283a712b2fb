#pragma once
// The entry that starts a program with the user's session.
//
// The first platform keeps it as a value under the current user's "Run" key;
// here it is an XDG autostart file, <config>/autostart/<name>.desktop, whose
// Exec= runs the given path. <config> is $XDG_CONFIG_HOME when that is an
// absolute path, else $HOME/.config, as the desktop's own rules say. The
// autostart folder is made when it is missing.
//
// Failures go to standard error, which leads into the system log once that
// exists, with the texts the manager has always written there:
//   "Failed to open registry key. Error: <code>"   the folder can't be had
//   "Failed to set autorun. Error: <code>"         the file can't be written
//   "Failed to remove autorun. Error: <code>"      the file can't be removed
// <code> is the system's error number. Nothing is shown to the operator.
#include <filesystem>
#include <string>

namespace vx::platform {

// Stores (enabled) or removes (!enabled) the entry called `name`. Removing an
// entry that isn't there succeeds. True on success.
bool setAutorun(const std::string& name, const std::filesystem::path& path, bool enabled);

// Where the entry called `name` lives (whether or not it exists).
std::filesystem::path autorunEntryPath(const std::string& name);

} // namespace vx::platform
