#include "platform/process_info.h"

#include <unistd.h>

namespace vx::platform {

long currentProcessId()
{
    return static_cast<long>(::getpid());
}

} // namespace vx::platform
