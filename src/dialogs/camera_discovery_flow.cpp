#include "dialogs/camera_discovery_flow.h"

namespace vx::dialogs {

std::optional<std::string> findCameraLink(const DiscoveryDialogs& dialogs, Messages& messages)
{
    const std::vector<FoundCamera> cameras = parseCameras(dialogs.scan());
    if (cameras.empty()) {
        showError(messages, noCamerasText());
        return std::nullopt;
    }
    const std::optional<std::string> link = dialogs.link(cameras);
    if (!link)
        return std::nullopt;
    if (link->empty() || *link == "error") {
        showError(messages, noLinkText());
        return std::nullopt;
    }
    return link;
}

} // namespace vx::dialogs
