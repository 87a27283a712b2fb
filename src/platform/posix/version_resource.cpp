#include "platform/version_resource.h"

namespace vx::platform {

std::string programVersionText(const std::string& builtIn)
{
    return builtIn;
}

} // namespace vx::platform
