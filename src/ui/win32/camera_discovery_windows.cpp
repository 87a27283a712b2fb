#include "ui/win32/camera_discovery_windows.h"

namespace vx::ui::win32 {

std::optional<std::string> runCameraDiscovery(HWND, const std::filesystem::path&)
{
    return std::nullopt;
}

} // namespace vx::ui::win32
