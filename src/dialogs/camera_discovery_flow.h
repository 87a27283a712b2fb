#pragma once
// The flow behind "Найти ONVIF камеру" of the stream dialog: the scan
// dialog, the camera list, the link dialog, and the link for the link field.
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "dialogs/camera_discovery.h"
#include "dialogs/messages.h"

namespace vx::dialogs {

struct DiscoveryDialogs {
    // CameraScanDialog: the text it left, whatever its result (empty after a cancel).
    std::function<std::string()> scan;
    // CameraLinkDialog over the cameras: the link when it closed with OK.
    std::function<std::optional<std::string>(const std::vector<FoundCamera>&)> link;
};

// The text for the link field, or nothing when it keeps its content.
std::optional<std::string> findCameraLink(const DiscoveryDialogs& dialogs, Messages& messages);

} // namespace vx::dialogs
