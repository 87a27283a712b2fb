#include "platform/process_info.h"

#include <windows.h>

namespace vx::platform {

long currentProcessId()
{
    return static_cast<long>(::GetCurrentProcessId());
}

} // namespace vx::platform
