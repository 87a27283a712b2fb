// Built only on the platform interfaces; the same for every platform.
#include "platform/single_instance.h"

#include "platform/window_endpoint.h"

namespace vx::platform {

bool acquireSingleInstance(const std::string& lockName, std::unique_ptr<NamedLock>& keep)
{
    auto lock = createNamedLock(lockName);
    if (!lock || !lock->tryLock())
        return false;
    keep = std::move(lock);
    return true;
}

bool raiseExistingInstance(const std::string& className)
{
    const WindowHandle window = findWindow(className, "");
    if (window == 0)
        return false;
    showWindow(window, ShowCommand::Restore);
    setForegroundWindow(window);
    return true;
}

} // namespace vx::platform
