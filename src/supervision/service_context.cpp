#include "supervision/service_context.h"

#include <chrono>
#include <thread>

#include "state/app_state.h"
#include "maintenance/system_log.h"
#include "platform/paths.h"

namespace vx::supervision {

std::string serviceImageName(Service service)
{
    switch (service) {
    case Service::recognition:
        return std::string("vxInference") + platform::executableSuffix;
    case Service::control:
        return std::string("vxControl") + platform::executableSuffix;
    case Service::messengers:
        break;
    }
    return std::string("vxMes") + platform::executableSuffix;
}

ServiceContext::ServiceContext(std::atomic<bool>& shuttingDownFlag, std::atomic<int>& fps,
                               std::atomic<int>& control, std::atomic<int>& mes)
    : shuttingDown(shuttingDownFlag), fpsRecognition(fps), statusControl(control), statusMes(mes)
{
}

void ServiceContext::pause(int ms) const
{
    if (sleep)
        sleep(ms);
    else
        std::this_thread::sleep_for(std::chrono::milliseconds(ms));
}

std::shared_ptr<ServiceContext> makeServiceContext(core::AppState& state)
{
    auto context = std::make_shared<ServiceContext>(state.shuttingDown, state.fpsRecognition,
                                                    state.statusControl, state.statusMes);
    core::AppState* s = &state;
    context->settings = [s] {
        ServiceSettings settings;
        settings.baseDirectory = s->baseDirectory;
        settings.configDirectory = s->ConfigDirectory;
        settings.systemLogPath = s->liveMainConfig.systemLogPath;
        if (maintenance::LogBuffer* log = maintenance::systemLog())
            settings.logThreshold = log->minLevel();
        settings.recognitionPort = s->recognitionConfig.port;
        settings.controlPort = s->controlConfig.port;
        settings.mesPort = s->messengersConfig.port;
        return settings;
    };
    return context;
}

} // namespace vx::supervision
