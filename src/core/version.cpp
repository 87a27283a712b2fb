#include "core/version.h"

namespace vx::core {
std::string versionText() { return VEXLANE_VERSION; }
}
