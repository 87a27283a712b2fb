#pragma once
// Replacing a whole file so that a reader, or a crash at any moment, sees
// either the old file or the new one, never a mix: the new text is written
// to a file of its own in the same folder, flushed to the disk, and then
// renamed over the old one in one step.
#include <filesystem>
#include <string>

namespace vx::platform {

// Creates or truncates `path` and writes `bytes` to it, checking every write,
// and flushes it to the disk before closing it. On failure returns false and
// puts the system's error text into `error`; what was written stays (the
// caller removes it).
bool writeWholeFile(const std::filesystem::path& path, const std::string& bytes, std::string& error);

// Renames `from` over `to` in one step, replacing `to` when it exists (same
// folder, so the same file system). The new file takes over the permissions
// of the one it replaces. On failure returns false, puts the system's error
// text into `error`, and both files are as they were.
bool replaceFile(const std::filesystem::path& from, const std::filesystem::path& to, std::string& error);

// Removes a file if it is there; quiet about everything.
void removeFileQuietly(const std::filesystem::path& path);

} // namespace vx::platform
