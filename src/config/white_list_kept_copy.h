#pragma once
// Copies of a white list file or of the registry kept beside it before the
// program writes over a version it didn't write itself:
// "<file>.<YYYYMMDD_hhmmss><suffix>", with "_2", "_3", ... after the time
// when a copy of that second exists already, so no copy replaces another.
#include <ctime>
#include <optional>
#include <string>

namespace vx::config {

inline constexpr const char* brokenCopySuffix = ".broken";
inline constexpr const char* backupCopySuffix = ".bak";

// The local time as "YYYYMMDD_hhmmss".
std::string copyTimeStamp(std::time_t time);

// The first name of that shape, for the 1251 path `path`, that no file bears.
std::string freeKeptCopyPath(const std::string& path, const std::string& suffix, std::time_t time);

// Copies `path` to a free name of that shape; the name taken, or nothing when
// the copy failed.
std::optional<std::string> keepCopyOf(const std::string& path, const std::string& suffix,
                                      std::time_t time);

} // namespace vx::config
