// The user's data folder: %LOCALAPPDATA%\Vexlane.
#include "platform/user_data.h"

#include <system_error>

namespace vx::platform {

namespace platform_detail {
std::filesystem::path localAppData();
}

std::filesystem::path userDataDirectory()
{
    const auto base = platform_detail::localAppData();
    if (base.empty())
        return {};
    const auto folder = base / L"Vexlane";
    std::error_code ec;
    std::filesystem::create_directories(folder, ec);
    return std::filesystem::is_directory(folder, ec) ? folder : std::filesystem::path();
}

} // namespace vx::platform
