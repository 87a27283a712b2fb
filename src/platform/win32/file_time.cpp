#include "platform/file_time.h"

#include <windows.h>

namespace vx::platform {

std::optional<std::int64_t> fileModificationTime(const std::filesystem::path& path)
{
    WIN32_FILE_ATTRIBUTE_DATA data{};
    if (!::GetFileAttributesExW(path.c_str(), GetFileExInfoStandard, &data))
        return std::nullopt;
    // 100 ns ticks since 1601 to nanoseconds since 1970.
    const std::int64_t ticks = (static_cast<std::int64_t>(data.ftLastWriteTime.dwHighDateTime) << 32) |
                               data.ftLastWriteTime.dwLowDateTime;
    return (ticks - 116444736000000000LL) * 100;
}

} // namespace vx::platform
