#include "core/settings_commands.h"

#include "config/text_codec.h"
#include "core/main_commands.h"
#include "core/save_failure.h"
#include "core/stream_files.h"
#include "core/video_quota.h"
#include "maintenance/log_buffer.h"
#include "maintenance/system_log.h"
#include "platform/autorun.h"
#include "supervision/service_watch.h"

namespace vx::core {

namespace {

std::string cp1251(const char* utf8)
{
    return config::utf8ToCp1251(utf8);
}

void showSaveFailure(const SettingsHooks& hooks, const std::string& fileName)
{
    if (hooks.showMessage)
        hooks.showMessage(cp1251("Сообщение"), saveFailedText(fileName));
}

// A service file after its dialog's OK: logged and shown when not saved.
bool saveServiceFile(const SettingsHooks& hooks, bool saved, const std::string& fileName)
{
    if (noteSave(saved, fileName))
        return true;
    showSaveFailure(hooks, fileName);
    return false;
}

void clearStatus(AppState& state)
{
    state.status.set(std::string());
}

void launchTask(AppState& state, const ProcessActions& actions, std::function<void()> task)
{
    auto launch = actions.launch ? actions.launch : launchAsync;
    state.pendingTasks.add(launch(std::move(task)));
}

void requestService(AppState& state, const ProcessActions& actions, const ProcessActions::ServiceRequest& request,
                    bool restart)
{
    if (!request)
        return;
    launchTask(state, actions, [request, restart] { request("/StopServer", restart); });
}

// The main config after a dialog's OK; a failed save is the operator's to know.
bool saveMain(const ProcessActions& actions, const SettingsHooks& hooks)
{
    if (!actions.saveMainConfig || actions.saveMainConfig())
        return true;
    showSaveFailure(hooks, config::mainConfigFileName);
    return false;
}

} // namespace

void editWhiteLists(AppState& state, const std::function<void()>& openManager)
{
    if (openManager)
        openManager();
    state.status.set(std::string());
}

SettingsHooks systemSettingsHooks(AppState& state)
{
    SettingsHooks hooks;
    hooks.setAutorun = platform::setAutorun;
    hooks.spawn = supervision::spawnRequest;
    AppState* s = &state;
    hooks.replaceVideoQuota = [s] { createVideoQuota(*s); };
    hooks.rewriteAllStreams = [s] { rewriteAllStreams(*s); };
    return hooks;
}

void editSettings(AppState& state, const ProcessActions& actions, const SettingsHooks& hooks)
{
    config::MainConfig& live = state.liveMainConfig;
    const bool autorunBefore = live.autoRunManager;
    // The form reads back into a fresh record, which has no stream lists; the
    // stream starts and the watch read them from this copy, so they stay.
    std::vector<std::string> streamsBefore = live.videoStreams;
    std::vector<bool> autoRunBefore = live.autoRunStreams;
    if (!hooks.dialogs.settings || !hooks.dialogs.settings(live))
        return;
    live.videoStreams = std::move(streamsBefore);
    live.autoRunStreams = std::move(autoRunBefore);
    if (live.autoRunManager != autorunBefore) {
        const bool done = hooks.setAutorun &&
                          hooks.setAutorun("Vexlane", autorunProgramPath(state.baseDirectory), live.autoRunManager);
        if (!done) {
            live.autoRunManager = autorunBefore;
            if (hooks.showMessage)
                hooks.showMessage(cp1251("Сообщение"), cp1251("Невозможно снять/установить автозапуск Менеджера!"));
        }
    }
    const bool saved = saveMain(actions, hooks);
    if (maintenance::LogBuffer* log = maintenance::systemLog())
        log->setMinLevel(maintenance::clampLogLevel(live.systemLevel));
    VX_LOG(maintenance::logTrace, "Global config changed!");
    if (hooks.spawn && actions.threadRequestsToDirect) {
        auto request = actions.threadRequestsToDirect;
        hooks.spawn([request] { request("/UpdateConfig", false); });
    }
    if (saved)
        state.status.set(cp1251("Настройки сохранены!"));
    if (hooks.replaceVideoQuota)
        hooks.replaceVideoQuota();
}

void editMessengers(AppState& state, const ProcessActions& actions, const SettingsHooks& hooks)
{
    config::loadMessengers(state.ConfigDirectory, state.messengersConfig, state.controlConfig.port);
    config::MessengersConfig& working = state.messengersDialogCopy;
    working.port = state.messengersConfig.port;
    working.on = state.messengersConfig.on;
    working.channels = state.messengersConfig.channels;
    bool channelsChanged = false;
    clearStatus(state);
    const bool apply = hooks.dialogs.messengers && hooks.dialogs.messengers(working, channelsChanged);
    if (!apply && !channelsChanged)
        return;
    const config::MessengersConfig before = state.messengersConfig;
    state.messengersConfig.port = working.port;
    state.messengersConfig.on = working.on;
    state.messengersConfig.channels = working.channels;
    if (!saveServiceFile(hooks, config::saveMessengers(state.ConfigDirectory, state.messengersConfig),
                         config::messengersConfigFileName)) {
        // The record stays what the file holds; the dialog's copy keeps the edits.
        state.messengersConfig = before;
        return;
    }
    if (!apply)
        return;
    // "/StopServer" goes out even to a service that isn't running.
    const bool on = state.messengersConfig.on;
    requestService(state, actions, actions.threadRequestsToMes, on);
    state.status.set(on ? cp1251("Отправлена команда для перезапуска сервиса мессенджеров!")
                        : cp1251("Отправлена команда для остановки сервиса мессенджеров!"));
}

void editRecognitionService(AppState& state, const ProcessActions& actions, const SettingsHooks& hooks)
{
    config::RecognitionSrvConfig& working = state.recognitionDialogCopy;
    const std::int32_t portBefore = working.port;
    if (!hooks.dialogs.recognition || !hooks.dialogs.recognition(working)) {
        clearStatus(state);
        return;
    }
    const config::RecognitionSrvConfig before = state.recognitionConfig;
    state.recognitionConfig = working;
    if (!saveServiceFile(hooks, config::saveRecogGlobal(state.ConfigDirectory, state.recognitionConfig),
                         config::recognitionConfigFileName)) {
        // The service and the stream files go on with what the file holds.
        state.recognitionConfig = before;
        return;
    }
    state.status.set(cp1251("Отправлена команда для перезапуска сервиса распознавания!"));
    // The restart reads the new port from the record, and the client follows.
    requestService(state, actions, actions.threadRequests, true);
    if (working.port != portBefore && hooks.rewriteAllStreams)
        hooks.rewriteAllStreams();
}

void editControlService(AppState& state, const ProcessActions& actions, const SettingsHooks& hooks)
{
    // Nothing but this command edits the control record, so the working copy
    // is the record as it stands.
    config::ControlSrvConfig working = state.controlConfig;
    const std::int32_t portBefore = working.port;
    if (!hooks.dialogs.control || !hooks.dialogs.control(working)) {
        clearStatus(state);
        return;
    }
    if (!saveServiceFile(hooks, config::saveControlGlobal(state.ConfigDirectory, working),
                         config::controlConfigFileName))
        return;   // the record stays what the file holds
    state.controlConfig = working;
    state.status.set(cp1251("Отправлена команда для перезапуска сервиса управления!"));
    // The request's value (-1) is a form field of the POSTs only; "/StopServer" is a GET.
    requestService(state, actions, actions.threadRequestsToDirect, true);
    if (working.port != portBefore && hooks.rewriteAllStreams)
        hooks.rewriteAllStreams();
}

void editProcessControl(AppState& state, const ProcessActions& actions, const SettingsHooks& hooks)
{
    config::MainConfig& live = state.liveMainConfig;
    const bool before = live.globalRestart;
    if (!hooks.dialogs.processControl || !hooks.dialogs.processControl(live)) {
        clearStatus(state);
        return;
    }
    saveMain(actions, hooks);
    if (!before && live.globalRestart) {
        state.restartControl = 10;
        state.status.set(cp1251("Контроля перезапуска включен!"));
    } else if (before && !live.globalRestart) {
        state.restartControl = 0;
        state.status.set(cp1251("Контроль перезапуска выключен!"));
    }
}

} // namespace vx::core
