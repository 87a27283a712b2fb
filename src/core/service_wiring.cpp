#include "core/service_wiring.h"

#include "supervision/service_launcher.h"
#include "supervision/service_requests.h"
#include "supervision/service_watch.h"

namespace vx::core {

void connectServiceActions(ProcessActions& actions, const std::shared_ptr<supervision::ServiceContext>& services,
                           AppState& state)
{
    actions.threadRequests = [services](const std::string& path, bool restart) {
        supervision::ThreadRequests(*services, path, restart);
    };
    actions.threadRequestsToDirect = [services](const std::string& path, bool restart) {
        supervision::threadRequestsToDirect(*services, path, restart);
    };
    actions.threadRequestsToMes = [services](const std::string& path, bool restart) {
        supervision::threadRequestsToMes(*services, path, restart);
    };
    AppState* s = &state;
    actions.messengerOn = [s] { return s->messengersConfig.on; };
}

void connectServiceHooks(TimerHooks& hooks, const std::shared_ptr<supervision::ServiceContext>& services,
                         AppState& state)
{
    hooks.pollServices = [services] { supervision::pollServices(services); };
    AppState* s = &state;
    hooks.watch = [services, s] { supervision::watchServices(*services, s->messengersConfig.on); };
}

void initServiceClients(supervision::ServiceContext& services)
{
    supervision::initHTTPClient(services);
    supervision::initHTTPClientDirect(services);
    supervision::initHTTPClientMes(services);
}

} // namespace vx::core
