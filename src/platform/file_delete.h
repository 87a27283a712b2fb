#pragma once
// Deleting a file with the meaning it has on Windows: a file that a writer
// still holds can't be deleted. The writer says so by holding the file's
// in-use mark for as long as it writes (the stream process, on the chunk it
// records). On Windows the open handle is the mark and DeleteFileW refuses by
// itself; on POSIX the mark is an exclusive flock on the file, and the delete
// refuses while it can't take that lock without waiting.
//
// A symbolic link is never followed: deleting a link removes nothing it
// points to, and on POSIX a link is refused.
#include <filesystem>
#include <memory>

namespace vx::platform {

enum class FileDeleteResult {
    deleted,   // the file is gone now
    missing,   // there was no such file (deleted by someone else)
    refused,   // in use, a link, or no right to delete it: it stays
};

FileDeleteResult deleteFileUnlessInUse(const std::filesystem::path& path);

// The writer's side: while the object lives, deleteFileUnlessInUse refuses
// the file. Dropped with the object or with the process.
class FileInUseMark {
public:
    virtual ~FileInUseMark() = default;
};

// Creates the file if it isn't there (empty) and marks it in use. Null when
// the file can't be opened; the caller goes on without the mark.
std::unique_ptr<FileInUseMark> markFileInUse(const std::filesystem::path& path);

} // namespace vx::platform
