#pragma once
// The log archive step: before the system log is truncated at start, the
// previous run's file is kept in "systemlogsarj" beside it, as
//   <stem>_<YYYY-MM-DD_HH-MM-SS>_arj.txt     (or ..._<n>_arj.txt when taken)
// stamped with the start of the run it holds (its first line's time stamp,
// or the file's last write when that line can't be read). Of the files in
// that folder whose names end in "_arj.txt" and begin with the log's stem,
// the newest `keep` (by the stamp in the name) stay; older ones are deleted.
#include <cstddef>
#include <filesystem>

namespace vx::maintenance {

inline constexpr const char* logArchiveFolderName = "systemlogsarj";
inline constexpr std::size_t logArchiveKeep = 30;

// Moves `logFile` into the archive. Returns the archived file's path, or an
// empty path when there was nothing to keep (no file, or an empty one).
// Throws std::filesystem::filesystem_error when the archive folder can't be
// made or the file can't be moved; an old archive that won't delete is left.
std::filesystem::path archiveLogFile(const std::filesystem::path& logFile,
                                     std::size_t keep = logArchiveKeep);

} // namespace vx::maintenance
