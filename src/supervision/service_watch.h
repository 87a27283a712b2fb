#pragma once
// The timer thread's two uses of the services: the poll of every second
// tick and the service half of the watch over dead processes.
#include <functional>
#include <memory>

#include "supervision/service_context.h"
#include "supervision/task_group.h"

namespace vx::supervision {

using Spawn = std::function<void(std::function<void()>)>;

// The process-wide group the periodic requests are spawned on and never
// waited for, but at teardown. Made on first use and never destroyed.
TaskGroup& requestTasks();
// Spawns on requestTasks().
void spawnRequest(std::function<void()> task);

// "inference request!" and the "/FPS" request; when the manager is shutting
// down nothing more; else "control request!" and the control's "/CheckRun",
// "mes request!" and the messenger's "/CheckRun" (whether it is on or not).
// Each request is spawned and forgotten; the context lives as long as the
// last of them.
void pollServices(const std::shared_ptr<ServiceContext>& context, const Spawn& spawn = spawnRequest);

// Each service whose process isn't found by its image name is started, on
// this thread, each start blocking up to the watch time: recognition, then
// control, then, only when `messengerOn`, messengers.
void watchServices(ServiceContext& context, bool messengerOn);

} // namespace vx::supervision
