#include "platform/user_data.h"

#include <cstdlib>
#include <system_error>

namespace vx::platform {

std::filesystem::path userDataDirectory()
{
    std::filesystem::path base;
    const char* xdg = std::getenv("XDG_DATA_HOME");
    if (xdg && *xdg == '/') {
        base = xdg;
    } else {
        const char* home = std::getenv("HOME");
        if (!home || *home != '/')
            return {};
        base = std::filesystem::path(home) / ".local" / "share";
    }
    const std::filesystem::path folder = base / "vexlane";
    std::error_code ec;
    std::filesystem::create_directories(folder, ec);
    if (!std::filesystem::is_directory(folder, ec))
        return {};
    return folder;
}

} // namespace vx::platform
