#pragma once
// The discovery tool as the camera dialogs call it: its command line run
// from `toolFolder` through one pipe, the output taken whole.
#include <filesystem>

#include "dialogs/camera_discovery.h"

namespace vx::core {

dialogs::ToolCall discoveryToolCall(const std::filesystem::path& toolFolder);

} // namespace vx::core
