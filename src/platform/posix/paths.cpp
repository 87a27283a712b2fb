// The POSIX side of paths.h. The runtime folder is worked out anew on every
// call (one getenv and one mkdir), so a test that points XDG_RUNTIME_DIR
// elsewhere is obeyed at once and nothing is cached behind anybody's back.
#include "platform/paths.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <system_error>

namespace vx::platform {

const char pathSeparator = '/';
const char* const executableSuffix = "";

std::filesystem::path executablePath()
{
    std::error_code ec;
    auto path = std::filesystem::read_symlink("/proc/self/exe", ec);
    return ec ? std::filesystem::path() : path;
}

std::filesystem::path folderOf(const std::filesystem::path& path)
{
    const std::string& text = path.native();
    const auto cut = text.find_last_of(pathSeparator);
    return cut == std::string::npos ? std::filesystem::path() : std::filesystem::path(text.substr(0, cut));
}

bool setCurrentDirectory(const std::filesystem::path& folder)
{
    return ::chdir(folder.c_str()) == 0;
}

namespace {

// Makes `folder` a private folder of this user: created 0700 when missing,
// tightened to 0700 when it exists with a looser mode. A folder owned by
// somebody else (or something that isn't a folder) is refused: in /tmp that
// would be another user's trap.
bool ensurePrivateFolder(const std::string& folder)
{
    if (::mkdir(folder.c_str(), 0700) != 0 && errno != EEXIST)
        return false;
    struct stat st {};
    if (::lstat(folder.c_str(), &st) != 0 || !S_ISDIR(st.st_mode) || st.st_uid != ::geteuid())
        return false;
    if ((st.st_mode & 07777) != 0700 && ::chmod(folder.c_str(), 0700) != 0)
        return false;
    return true;
}

} // namespace

std::filesystem::path runtimeDirectory()
{
    std::string folder;
    const char* xdg = std::getenv("XDG_RUNTIME_DIR");
    if (xdg && *xdg)
        folder = std::string(xdg) + "/vexlane";
    else
        folder = "/tmp/vexlane-" + std::to_string(::geteuid());
    if (!ensurePrivateFolder(folder))
        return {};
    return folder;
}

bool fileExists(const std::filesystem::path& path)
{
    struct stat st {};
    return ::stat(path.c_str(), &st) == 0;
}

bool copyFileOverwrite(const std::filesystem::path& from, const std::filesystem::path& to,
                       std::string& error)
{
    std::error_code ec;
    std::filesystem::copy_file(from, to, std::filesystem::copy_options::overwrite_existing, ec);
    if (ec) {
        error = ec.message();
        return false;
    }
    return true;
}

} // namespace vx::platform
