#pragma once
// Binds the core's commands and the timer thread to the service workers of
// supervision: the window makes one ServiceContext and hands it here.
#include <memory>

#include "core/process_actions.h"
#include "state/app_state.h"
#include "core/timer_thread.h"
#include "supervision/service_context.h"

namespace vx::core {

// threadRequests, threadRequestsToDirect, threadRequestsToMes and
// messengerOn (the messenger service's "on" switch).
void connectServiceActions(ProcessActions& actions, const std::shared_ptr<supervision::ServiceContext>& services,
                           AppState& state);

// pollServices: the three polls on the process-wide request group. watch:
// the services' half of the watch (find by image name, start the missing);
// the streams' half follows it there.
void connectServiceHooks(TimerHooks& hooks, const std::shared_ptr<supervision::ServiceContext>& services,
                         AppState& state);

// Create-handler step 19: the three clients, in this order.
void initServiceClients(supervision::ServiceContext& services);

} // namespace vx::core
