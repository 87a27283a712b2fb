#include "core/version.h"

#include "platform/version_resource.h"

namespace vx::core {
std::string versionText() { return platform::programVersionText(VEXLANE_VERSION); }
}
