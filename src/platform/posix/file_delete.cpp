// The POSIX side of file_delete.h. The in-use mark is an exclusive flock on
// a descriptor of the file; the delete takes the same lock without waiting
// before it unlinks, and holds it across the unlink, so a writer can't mark
// the file between the test and the delete.
#include "platform/file_delete.h"

#include "platform/posix/unique_fd.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace vx::platform {
namespace {

using posix::UniqueFd;

bool sameFile(int fd, const std::filesystem::path& path)
{
    struct stat opened {};
    struct stat named {};
    return ::fstat(fd, &opened) == 0 && ::lstat(path.c_str(), &named) == 0 && opened.st_dev == named.st_dev &&
           opened.st_ino == named.st_ino;
}

class PosixFileInUseMark final : public FileInUseMark {
public:
    explicit PosixFileInUseMark(UniqueFd fd) : fd_(std::move(fd)) {}

private:
    UniqueFd fd_;   // closing it drops the lock
};

} // namespace

FileDeleteResult deleteFileUnlessInUse(const std::filesystem::path& path)
{
    // O_NOFOLLOW: a link fails to open (ELOOP) and is refused; O_NONBLOCK: a
    // FIFO put in the file's place doesn't hang the open.
    UniqueFd fd(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
    if (!fd.valid())
        return errno == ENOENT || errno == ENOTDIR ? FileDeleteResult::missing : FileDeleteResult::refused;
    while (::flock(fd.get(), LOCK_EX | LOCK_NB) != 0)
        if (errno != EINTR)
            return FileDeleteResult::refused;
    // The name may have been given to another file since the open.
    if (!sameFile(fd.get(), path))
        return FileDeleteResult::refused;
    if (::unlink(path.c_str()) == 0)
        return FileDeleteResult::deleted;
    return errno == ENOENT ? FileDeleteResult::missing : FileDeleteResult::refused;
}

std::unique_ptr<FileInUseMark> markFileInUse(const std::filesystem::path& path)
{
    // A delete may hold the lock for a moment, and may unlink the name just
    // before we get the lock: then the lock is on a file nobody can reach,
    // and the name is made again.
    for (int attempt = 0; attempt < 5; ++attempt) {
        UniqueFd fd(::open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0644));
        if (!fd.valid())
            return nullptr;
        int locked = 0;
        while ((locked = ::flock(fd.get(), LOCK_EX)) != 0 && errno == EINTR) {
        }
        if (locked != 0)
            return nullptr;
        if (sameFile(fd.get(), path))
            return std::make_unique<PosixFileInUseMark>(std::move(fd));
    }
    return nullptr;
}

} // namespace vx::platform
