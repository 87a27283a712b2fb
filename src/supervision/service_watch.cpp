#include "supervision/service_watch.h"

#include "maintenance/system_log.h"
#include "supervision/service_launcher.h"
#include "supervision/service_requests.h"

namespace vx::supervision {

TaskGroup& requestTasks()
{
    // Never destroyed: tasks still running at exit would be waited for.
    static TaskGroup* group = new TaskGroup;
    return *group;
}

void spawnRequest(std::function<void()> task)
{
    requestTasks().spawn(std::move(task));
}

void pollServices(const std::shared_ptr<ServiceContext>& context, const Spawn& spawn)
{
    VX_LOG(maintenance::logDebug, "inference request!");
    spawn([context] { ThreadRequests(*context, "/FPS", false); });
    if (context->shuttingDown)
        return;
    VX_LOG(maintenance::logDebug, "control request!");
    spawn([context] { threadRequestsToDirect(*context, "/CheckRun", false); });
    VX_LOG(maintenance::logDebug, "mes request!");
    spawn([context] { threadRequestsToMes(*context, "/CheckRun", false); });
}

void watchServices(ServiceContext& context, bool messengerOn)
{
    if (context.process.find(serviceImageName(Service::recognition)) == 0)
        startInference(context);
    if (context.process.find(serviceImageName(Service::control)) == 0)
        startControl(context);
    if (messengerOn && context.process.find(serviceImageName(Service::messengers)) == 0)
        startMes(context);
}

} // namespace vx::supervision
