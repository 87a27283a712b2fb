#include "platform/file_time.h"

#include <sys/stat.h>

namespace vx::platform {

std::optional<std::int64_t> fileModificationTime(const std::filesystem::path& path)
{
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0)
        return std::nullopt;
    return static_cast<std::int64_t>(status.st_mtim.tv_sec) * 1000000000 + status.st_mtim.tv_nsec;
}

} // namespace vx::platform
