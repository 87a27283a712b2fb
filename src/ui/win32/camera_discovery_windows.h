#pragma once
// The two waiting dialogs of camera discovery and the flow behind
// "Найти ONVIF камеру". Each call of the tool runs on a thread of its own
// while the dialog's loop moves the bar; the call's end is posted back to
// the dialog, and a call that ends after its dialog closed is dropped.
#include <windows.h>

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "dialogs/camera_discovery.h"
#include "dialogs/messages.h"

namespace vx::ui::win32 {

// "Сканирование камер в локальной сети": the text the scan left, empty
// after a cancel or a tool that didn't start.
std::string runCameraScanDialog(HWND owner, const dialogs::ToolCall& call);
// "Получение rtsp ссылки камеры" over the cameras: the link once it closed
// with OK.
std::optional<std::string> runCameraLinkDialog(HWND owner, const std::vector<dialogs::FoundCamera>& cameras,
                                               const dialogs::ToolCall& call);

// "Найти ONVIF камеру": scan, choose, ask for the link. The text for the
// stream dialog's link field, or nothing when it keeps its content.
std::optional<std::string> runCameraDiscovery(HWND owner, const dialogs::ToolCall& call,
                                              dialogs::Messages& messages);
std::optional<std::string> runCameraDiscovery(HWND owner, const std::filesystem::path& toolFolder);

} // namespace vx::ui::win32
