#pragma once
// The two waiting dialogs of camera discovery and the flow behind
// "Найти ONVIF камеру".
#include <windows.h>

#include <filesystem>
#include <optional>
#include <string>

namespace vx::ui::win32 {

// "Найти ONVIF камеру": scan, choose, ask for the link, with the tool from
// `toolFolder` (the manager's folder). The text for the stream dialog's link
// field, or nothing when it keeps its content.
std::optional<std::string> runCameraDiscovery(HWND owner, const std::filesystem::path& toolFolder);

} // namespace vx::ui::win32
