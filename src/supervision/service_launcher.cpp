#include "supervision/service_launcher.h"

#include "config/text_codec.h"
#include "maintenance/system_log.h"
#include "platform/paths.h"

namespace vx::supervision {

std::string inferenceCommandLine(const std::string& configDirectory, const std::string& systemLogPath)
{
    return serviceImageName(Service::recognition) + " \"" + configDirectory + "/vx_recog_config_srv.json\" \"" +
           systemLogPath + "/vxInferenceLog.txt\"";
}

std::string controlCommandLine()
{
    return serviceImageName(Service::control) + " ";
}

std::string mesCommandLine(const std::string& configDirectory, const std::string& systemLogPath,
                           std::int32_t logThreshold)
{
    std::string line = serviceImageName(Service::messengers) + " \"" + configDirectory +
                       "/vx_mess_config.json\" \"" + systemLogPath + platform::pathSeparator + "vxMes.txt\"";
    if (logThreshold <= 2)
        line += " -logging";
    return line;
}

void initHTTPClient(ServiceContext& context)
{
    initHTTPClient(context.clients, context.settings().recognitionPort);
}

void initHTTPClientDirect(ServiceContext& context)
{
    initHTTPClientDirect(context.clients, context.settings().controlPort);
}

void initHTTPClientMes(ServiceContext& context)
{
    initHTTPClientMes(context.clients, context.settings().mesPort);
}

namespace {

// Steps 1 to 5 of a start: create the process, watch it, log the outcome.
void launchAndWatch(ServiceContext& context, const ServiceSettings& settings, Service service,
                    const std::string& commandLine, bool inheritHandles, bool noConsole)
{
    platform::ProcessStartInfo info;
    info.commandLine = config::cp1251ToUtf8(commandLine);
    info.workingDirectory = settings.baseDirectory;
    info.searchFolder = settings.baseDirectory;
    info.inheritHandles = inheritHandles;
    info.noConsole = noConsole;
    std::unique_ptr<platform::StartedProcess> process = context.process.start(info);
    if (!process)
        return;   // a failed start is only a false result: nothing is logged
    const std::string name = serviceImageName(service);
    if (process->waitForExit(context.startWatchMs)) {
        const int code = process->exitCode();
        if (code == 0)
            VX_LOG(maintenance::logError,
                   name + config::utf8ToCp1251(" - процесс завершился спустя менее 5 секунд после старта"));
        else
            VX_LOG(maintenance::logError,
                   name + config::utf8ToCp1251(" - процесс завершился спустя менее 5 секунд после старта с ошибкой: ") +
                       std::to_string(code));
    } else {
        VX_LOG(maintenance::logInfo, name + " restarted 5 second ago!");
    }
    // The handle goes with `process`; a service still running is reaped in
    // the background when it ends.
}

} // namespace

void startInference(ServiceContext& context)
{
    const ServiceSettings settings = context.settings();
    launchAndWatch(context, settings, Service::recognition,
                   inferenceCommandLine(settings.configDirectory, settings.systemLogPath), false, false);
    initHTTPClient(context);
}

void startControl(ServiceContext& context)
{
    const ServiceSettings settings = context.settings();
    launchAndWatch(context, settings, Service::control, controlCommandLine(), false, false);
    initHTTPClientDirect(context);
}

void startMes(ServiceContext& context)
{
    const ServiceSettings settings = context.settings();
    launchAndWatch(context, settings, Service::messengers,
                   mesCommandLine(settings.configDirectory, settings.systemLogPath, settings.logThreshold), true,
                   true);
    initHTTPClientMes(context);
}

} // namespace vx::supervision
