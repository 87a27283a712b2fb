#pragma once
// The modification time of a file, to tell whether someone else wrote it
// since the program last read it.
#include <cstdint>
#include <filesystem>
#include <optional>

namespace vx::platform {

// Nanoseconds since the epoch of the file's last modification; nothing when
// the file doesn't exist or can't be examined.
std::optional<std::int64_t> fileModificationTime(const std::filesystem::path& path);

} // namespace vx::platform
