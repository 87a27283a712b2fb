#pragma once
// The log archive step: before the system log is truncated at start, the
// previous run's file is kept in "systemlogsarj" beside it, as
//   <stem>_<YYYY-MM-DD_HH-MM-SS>_arj.txt     (or ..._<n>_arj.txt when taken)
// stamped with the start of the run it holds (its first line's time stamp,
// or the file's last write when that line can't be read). The name is for
// the reader only: the clock that wrote a first line may have been wrong.
//
// What stays, of the files in that folder whose names end in "_arj.txt" and
// begin with the log's stem, ranked by their last write (the end of the run
// each holds):
//   - the archive made by this start, always;
//   - the newest `keep`;
//   - the oldest `logArchiveBurstKeep` of every burst that reaches into
//     those: archives whose last writes lie less than `logArchiveBurstGap`
//     apart. A crash loop of quick restarts is one burst, so its first
//     failure (and the run before it) is never pushed out by the loop's
//     later, alike logs, however long the loop goes on.
// Everything else is deleted, so at most keep * (logArchiveBurstKeep + 1) + 1
// files stay.
#include <chrono>
#include <cstddef>
#include <filesystem>

namespace vx::maintenance {

inline constexpr const char* logArchiveFolderName = "systemlogsarj";
inline constexpr std::size_t logArchiveKeep = 30;
inline constexpr std::size_t logArchiveBurstKeep = 3;
inline constexpr std::chrono::minutes logArchiveBurstGap{10};

// Moves `logFile` into the archive. Returns the archived file's path, or an
// empty path when there was nothing to keep (no file, or an empty one).
// Throws std::filesystem::filesystem_error when the archive folder can't be
// made or the file can't be moved; an old archive that won't delete is left.
std::filesystem::path archiveLogFile(const std::filesystem::path& logFile,
                                     std::size_t keep = logArchiveKeep);

} // namespace vx::maintenance
