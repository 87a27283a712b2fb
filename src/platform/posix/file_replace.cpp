// The POSIX side of file_replace.h: write(2) in a loop, fsync(2) and
// rename(2), which replaces the target atomically within one file system.
#include "platform/file_replace.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace vx::platform {

namespace {

bool fail(std::string& error)
{
    error = std::strerror(errno);
    return false;
}

} // namespace

bool writeWholeFile(const std::filesystem::path& path, const std::string& bytes, std::string& error)
{
    const int fd = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    if (fd < 0)
        return fail(error);
    std::size_t done = 0;
    bool ok = true;
    while (ok && done < bytes.size()) {
        const ssize_t n = ::write(fd, bytes.data() + done, bytes.size() - done);
        if (n >= 0)
            done += static_cast<std::size_t>(n);
        else if (errno != EINTR)
            ok = fail(error);
    }
    if (ok && ::fsync(fd) != 0)
        ok = fail(error);
    // close() is called once whatever happened; its own failure (a delayed
    // write error on some file systems) counts too.
    if (::close(fd) != 0 && ok)
        ok = fail(error);
    return ok;
}

bool replaceFile(const std::filesystem::path& from, const std::filesystem::path& to, std::string& error)
{
    struct stat old {};
    if (::stat(to.c_str(), &old) == 0)
        ::chmod(from.c_str(), old.st_mode & 07777);   // best effort: a wrong mode loses nothing
    if (::rename(from.c_str(), to.c_str()) != 0)
        return fail(error);
    return true;
}

void removeFileQuietly(const std::filesystem::path& path)
{
    ::unlink(path.c_str());
}

} // namespace vx::platform
