#pragma once
// Where the program lives and the small file operations the core needs.
// Paths are std::filesystem::path, so each platform keeps its native form.
#include <filesystem>
#include <string>

namespace vx::platform {

// The separator the platform builds paths with ('\\' on Windows, '/' here).
extern const char pathSeparator;
// What the platform appends to an executable's name (".exe" or nothing).
extern const char* const executableSuffix;

// Full path of the running executable (links resolved). Empty on failure.
std::filesystem::path executablePath();
// The folder of a path: everything before its last separator.
std::filesystem::path folderOf(const std::filesystem::path& path);
bool setCurrentDirectory(const std::filesystem::path& folder);

// The per-user runtime folder ($XDG_RUNTIME_DIR/vexlane, or
// /tmp/vexlane-<uid>), created with mode 0700 when missing. Empty on failure.
std::filesystem::path runtimeDirectory();

bool fileExists(const std::filesystem::path& path);
// Copies `from` over `to`, overwriting it. On failure returns false and puts
// the system's error text into `error`.
bool copyFileOverwrite(const std::filesystem::path& from, const std::filesystem::path& to,
                       std::string& error);

} // namespace vx::platform
