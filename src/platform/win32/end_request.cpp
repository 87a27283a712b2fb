// On Windows an end request reaches the manager as a window message (the
// session's end, a close from outside), through its message loop: there is
// no descriptor to watch.
#include "platform/end_request.h"

namespace vx::platform {

int endRequestDescriptor()
{
    return -1;
}

void drainEndRequests() {}

} // namespace vx::platform
