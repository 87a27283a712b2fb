#include "core/apply_edits.h"

#include "config/text_codec.h"
#include "core/process_actions.h"
#include "core/save_failure.h"
#include "state/camera_runtime.h"
#include "core/stream_files.h"
#include "liveview/overlay.h"
#include "liveview/tile_grid.h"
#include "maintenance/system_log.h"

namespace vx::core {

namespace {

using config::utf8ToCp1251;
using maintenance::logDebug;
using maintenance::logTrace;

// Which section a prepare takes from the stream's file.
enum class FileSection { common, recognition, control };

void launchTask(AppState& state, const EditHooks& hooks, std::function<void()> task)
{
    auto launch = hooks.launch ? hooks.launch : launchAsync;
    state.pendingTasks.add(launch(std::move(task)));
}

void setStatus(AppState& state, const char* utf8, const std::string& name)
{
    state.status.set(utf8ToCp1251(utf8) + name);
}

void redraw(const EditHooks& hooks)
{
    if (hooks.redraw)
        hooks.redraw();
}

bool openDialog(const std::function<bool()>& dialog)
{
    return dialog && dialog();
}

// The scratch set from the table; then, when the stream's file can be read,
// the section the action concerns from the file, which wins.
void prepare(AppState& state, int index, FileSection section)
{
    ScratchCommon& scratch = state.scratchConfig;
    static_cast<config::CameraCommon&>(scratch) = state.streams.getConfig(index);
    state.scratchRecognition = state.streams.getRecognition(index);
    state.scratchControl = state.streams.getControl(index);
    if (!loadStreamFile(state, scratch.ID))
        return;
    switch (section) {
    case FileSection::common:
        static_cast<config::CameraCommon&>(scratch) = state.workingCamera.common;
        break;
    case FileSection::recognition:
        state.scratchRecognition = state.workingCamera.recognition;
        // The dialog names the stream by the table's name.
        scratch.videoName = state.streams.getConfig(index).videoName;
        break;
    case FileSection::control:
        state.scratchControl = state.workingCamera.control;
        scratch.videoName = state.streams.getConfig(index).videoName;
        break;
    }
}

void copyStoredToLive(AppState& state)
{
    state.liveMainConfig = state.storedMainConfig;
}

bool saveMainConfigFile(AppState& state)
{
    return noteSave(config::saveConfig(state.ConfigDirectory, state.storedMainConfig, state.streams.collectIds(),
                                       state.streams.collectPlanned()),
                    config::mainConfigFileName);
}

void showSaveFailure(const EditHooks& hooks, const std::string& fileName)
{
    if (hooks.messages)
        dialogs::showError(*hooks.messages, saveFailedText(fileName));
}

// The table's three sections of one stream, to put back when its file was
// not saved.
struct StreamSections {
    config::CameraCommon common;
    config::CameraRecognition recognition;
    config::CameraControl control;
};

StreamSections streamSections(const AppState& state, int index)
{
    return {state.streams.getConfig(index), state.streams.getRecognition(index), state.streams.getControl(index)};
}

// The stream's file and the main config after a dialog's OK. When one was not
// saved the operator is told, the table gets back the sections of `before`
// (what the file still holds), and the caller leaves the running stream
// alone: it would only read the old file again.
bool saveStreamAfterDialog(AppState& state, const EditHooks& hooks, int index, const StreamSections& before)
{
    std::string unsaved;
    if (writeStreamFile(state, index, &unsaved))
        return true;
    state.streams.setConfig(index, before.common);
    state.streams.setRecognition(index, before.recognition);
    state.streams.setControl(index, before.control);
    redraw(hooks);
    showSaveFailure(hooks, unsaved);
    return false;
}

void startOrStop(AppState& state, const EditHooks& hooks, int index)
{
    static_cast<config::CameraCommon&>(state.scratchConfig) = state.streams.getConfig(index);
    const std::string name = state.scratchConfig.videoName;
    if (state.streams.isRunning(index) != 1) {
        launchTask(state, hooks, [start = hooks.videoStart, index] { if (start) start(index); });
        setStatus(state, "Отправлена команда запуска видеопотока с именем ", name);
    } else {
        launchTask(state, hooks, [stop = hooks.videoStop, index] { if (stop) stop(index); });
        setStatus(state, "Отправлена команда остановки видеопотока с именем ", name);
    }
}

void editStreamSettings(AppState& state, const EditHooks& hooks, int index)
{
    prepare(state, index, FileSection::common);
    const config::CameraCommon before = state.scratchConfig;
    if (!openDialog(hooks.streamDialog))
        return;
    const StreamSections sections = streamSections(state, index);
    const std::string name = state.scratchConfig.videoName;
    if (state.streams.setConfig(index, state.scratchConfig) != 0) {
        state.status.set(utf8ToCp1251("Ошибка изменения видеопотока!"));
        return;
    }
    redraw(hooks);
    setStatus(state, "Изменены параметры видеопотока ", name);
    // The recognition and control sections carry no name of their own here:
    // the file takes the new name from the Common section.
    copyStoredToLive(state);
    if (!saveStreamAfterDialog(state, hooks, index, sections))
        return;
    VX_LOG(logTrace, "editCamera changed: " + name);
    if (state.streams.isRunning(index) == 1) {
        VX_LOG(logTrace, "editCamera signal to " + name);
        applyStreamChange(state, hooks, before, state.scratchConfig, index);
    }
}

void editRecognition(AppState& state, const EditHooks& hooks, int index)
{
    prepare(state, index, FileSection::recognition);
    if (!openDialog(hooks.recognitionDialog))
        return;
    const StreamSections sections = streamSections(state, index);
    const std::string name = state.scratchConfig.videoName;
    if (state.streams.setRecognition(index, state.scratchRecognition) != 0) {
        state.status.set(utf8ToCp1251("Ошибка изменения парметров распознавания видеопотока!"));
        return;
    }
    // The dialog also edits a flag of the Common section.
    state.streams.setConfig(index, state.scratchConfig);
    setStatus(state, "Изменены параметры распознавания видеопотока ", name);
    if (!saveStreamAfterDialog(state, hooks, index, sections))
        return;
    if (state.streams.isRunning(index) == 1) {
        VX_LOG(logTrace, "editCameraRecph signal to " + name);
        // There is no finer signal for recognition settings: always a restart.
        launchTask(state, hooks, [restart = hooks.videoRestart, index] { if (restart) restart(index); });
    }
    VX_LOG(logTrace, "editCamera changed recog: " + name);
}

void editSignals(AppState& state, const EditHooks& hooks, int index)
{
    prepare(state, index, FileSection::control);
    if (!openDialog(hooks.signalsDialog))
        return;
    const StreamSections sections = streamSections(state, index);
    const bool report = state.reportRequested;
    state.reportRequested = false;
    const std::string name = state.scratchConfig.videoName;
    if (state.streams.setControl(index, state.scratchControl) != 0) {
        state.status.set(utf8ToCp1251("Ошибка изменения парметров управления видеопотока!"));
        return;
    }
    setStatus(state, "Изменены параметры управления видеопотока ", name);
    if (!saveStreamAfterDialog(state, hooks, index, sections))
        return;
    VX_LOG(logTrace, "editCamera changed control: " + name);
    auto request = hooks.requestControl;
    if (report) {
        if (state.statusControl != 0) {
            if (hooks.messages)
                dialogs::showError(*hooks.messages,
                                   utf8ToCp1251("Команда генерации отчета не может быть выполнена, поскольку "
                                                "сервер управления не запущен!"));
        } else {
            const std::int32_t id = state.streams.getConfig(index).ID;
            launchTask(state, hooks, [request, id] { if (request) request("/GenerateReport", true, id, 0); });
            state.status.set(utf8ToCp1251("Отдана команда генерации отчета, которая будет выполнена в течение "
                                          "10 секунд! Результат будет записан в папку reports!"));
        }
    }
    // Signals are the control service's business: the stream isn't touched.
    launchTask(state, hooks, [request] { if (request) request("/UpdateConfig", true, -1, 0); });
}

void deleteStream(AppState& state, const EditHooks& hooks, int index)
{
    if (!hooks.messages ||
        !dialogs::askOkCancel(*hooks.messages, utf8ToCp1251("Вы уверены, что хотите удалить видеопоток?")))
        return;
    // The process and the file stay: a running stream goes on running.
    std::string name;
    if (!state.streams.removeStream(index, name))
        return;
    redraw(hooks);
    saveMainConfigFile(state);
    copyStoredToLive(state);
    setStatus(state, "Удален видеопоток ", name);
    VX_LOG(logTrace, "editCamera deleted: " + name);
}

void togglePlannedFlag(AppState& state, const EditHooks& hooks, int index)
{
    bool planned = false;
    if (!state.streams.togglePlanned(index, planned))
        return;
    prepare(state, index, FileSection::common);
    redraw(hooks);
    const std::string name = state.scratchConfig.videoName;
    if (planned)
        setStatus(state,
                  "Теперь статус видеопотока является включенным - он будет перезапущен при повторном общем "
                  "запуске! Видеопоток ",
                  name);
    else
        setStatus(state,
                  "Теперь статус видеопотока является выключенным - он не будет перезапущен при повторном общем "
                  "запуске! Видеопоток ",
                  name);
    state.scratchConfig.autoRun = planned;
    if (state.streams.setConfig(index, state.scratchConfig) == 0)
        writeStreamFile(state, index);
    copyStoredToLive(state);
}

void toggleWindow(AppState& state, const EditHooks& hooks, int index, int zone)
{
    prepare(state, index, FileSection::common);
    const config::CameraCommon before = state.scratchConfig;
    if (zone == zoneConsole)
        state.scratchConfig.showConsole = !state.scratchConfig.showConsole;
    else
        state.scratchConfig.unShowVideo = !state.scratchConfig.unShowVideo;
    if (state.streams.setConfig(index, state.scratchConfig) != 0)
        return;
    state.scratchRecognition = state.streams.getRecognition(index);
    state.scratchControl = state.streams.getControl(index);
    copyStoredToLive(state);
    writeStreamFile(state, index);
    if (state.streams.isRunning(index) == 1) {
        VX_LOG(logTrace, "editCamera 6,7 signal to " + state.scratchConfig.videoName);
        applyStreamChange(state, hooks, before, state.scratchConfig, index);
    }
    redraw(hooks);
}

void handSignal(AppState& state, const EditHooks& hooks, int index, int zone)
{
    VX_LOG(logDebug, "hand signal!");
    const std::int32_t id = state.streams.getConfig(index).ID;
    // "open" is 0 for the button labelled "Открыть" and 1 for "Закрыть".
    const std::int32_t open = zone == liveview::buttonClose ? 1 : 0;
    auto request = hooks.requestControl;
    auto task = [request, id, open] { if (request) request("/HandSignal", false, id, open); };
    if (hooks.spawn)
        hooks.spawn(task);
    else
        launchTask(state, hooks, task);
    state.status.set(utf8ToCp1251("Отправлен ручной сигнал!"));
}

bool restartNeeded(const config::CameraCommon& a, const config::CameraCommon& b)
{
    return a.videoPath != b.videoPath || a.videoName != b.videoName || a.width != b.width ||
           a.height != b.height || a.fps != b.fps || a.reconnect != b.reconnect ||
           a.secondsToReconnect != b.secondsToReconnect || a.attempts != b.attempts || a.aspect != b.aspect ||
           a.onlyVideoStream != b.onlyVideoStream || a.writeVideo != b.writeVideo ||
           a.writeOnlyNumObj != b.writeOnlyNumObj || a.writeTransport != b.writeTransport ||
           a.writePerson != b.writePerson || a.videoChunk != b.videoChunk || a.widthWrite != b.widthWrite ||
           a.heightWrite != b.heightWrite || a.tcp != b.tcp || a.decodeNvidia != b.decodeNvidia ||
           a.decodeDirectX != b.decodeDirectX ||
           // The console is fixed when the process starts.
           a.showConsole != b.showConsole;
}

} // namespace

int hitTile(AppState& state, const liveview::LiveView& view, int x, int y)
{
    int tile = liveview::noTile;
    state.streams.withDrawLock([&](std::vector<CameraRuntime>&) { tile = liveview::tileAt(view.grid, x, y); });
    return tile;
}

int hitZone(AppState& state, const liveview::LiveView& view, int index, int x, int y)
{
    int zone = liveview::noButton;
    state.streams.withDrawLock([&](std::vector<CameraRuntime>& records) {
        zone = liveview::buttonAt(view.grid, records, index, x, y);
    });
    return zone;
}

void editCamera(AppState& state, const liveview::LiveView& view, const EditHooks& hooks, int x, int y)
{
    x = liveview::mouseCoordinate(x);
    y = liveview::mouseCoordinate(y);
    const int tile = hitTile(state, view, x, y);
    if (tile == liveview::noTile)
        return;
    if (tile == liveview::addTile) {
        addStreamFromTile(state, hooks);
        return;
    }
    const int zone = hitZone(state, view, tile, x, y);
    switch (zone) {
    case liveview::buttonStartStop:
        startOrStop(state, hooks, tile);
        break;
    case liveview::buttonSettings:
        editStreamSettings(state, hooks, tile);
        break;
    case liveview::buttonRecognition:
        editRecognition(state, hooks, tile);
        break;
    case liveview::buttonSignals:
        editSignals(state, hooks, tile);
        break;
    case liveview::buttonDelete:
        deleteStream(state, hooks, tile);
        break;
    case liveview::buttonPlanned:
        togglePlannedFlag(state, hooks, tile);
        break;
    case liveview::buttonShowWindow:
    case zoneConsole:
        toggleWindow(state, hooks, tile, zone);
        break;
    case liveview::buttonOpen:
    case liveview::buttonClose:
        handSignal(state, hooks, tile, zone);
        break;
    default:
        break;
    }
}

void addStreamFromTile(AppState& state, const EditHooks& hooks)
{
    const std::string name = utf8ToCp1251("Камера ") + std::to_string(state.streams.nextFreeId());
    if (state.streams.size() >= maxStreams) {
        state.status.set(utf8ToCp1251("Слишком много видеопотоков!"));
        return;
    }
    ScratchCommon& scratch = state.scratchConfig;
    static_cast<config::CameraCommon&>(scratch) = defaultCameraCommon();
    scratch.isNew = true;
    scratch.videoName = name;
    scratch.videoChunk = state.liveMainConfig.videoChunk;
    if (!openDialog(hooks.streamDialog))
        return;
    scratch.isNew = false;
    scratch.autoRun = true;
    const config::CameraRecognition recognition;
    const config::CameraControl control;
    std::int32_t id = 0;
    if (state.streams.addStream(scratch, recognition, control, id, false)) {
        state.status.set(utf8ToCp1251("Слишком много видеопотоков!"));
        return;
    }
    redraw(hooks);
    scratch.ID = id;
    // The table's Common section takes the ID too, so that later edits find
    // the stream's file by it.
    state.streams.setConfig(state.streams.size() - 1, scratch);
    config::CameraConfig& working = state.workingCamera;
    working.common = scratch;
    working.recognition = recognition;
    working.control = control;
    if (!noteSave(config::saveCamera(config::cameraFilePath(state.ConfigDirectory, id), working,
                                     state.recognitionConfig.port, state.controlConfig.port),
                  config::cameraFileName(id))) {
        // A stream without its file would be listed in the main config and
        // fail at the next start: it goes again.
        std::string removed;
        state.streams.removeStream(state.streams.size() - 1, removed);
        redraw(hooks);
        showSaveFailure(hooks, config::cameraFileName(id));
        return;
    }
    if (!saveMainConfigFile(state))
        showSaveFailure(hooks, config::mainConfigFileName);
    copyStoredToLive(state);
    VX_LOG(logTrace, "editCamera add: " + scratch.videoName);
    auto request = hooks.requestControl;
    launchTask(state, hooks, [request] { if (request) request("/UpdateConfig", true, -1, 0); });
    setStatus(state, "Добавлен видеопоток с именем: ", scratch.videoName);
}

void applyStreamChange(AppState& state, const EditHooks& hooks, const config::CameraCommon& before,
                       const config::CameraCommon& after, int index)
{
    if (restartNeeded(before, after)) {
        launchTask(state, hooks, [restart = hooks.videoRestart, index] { if (restart) restart(index); });
        setStatus(state, "Отправлена команда запуска видеопотока с именем ", after.videoName);
        return;
    }
    if (before.unShowVideo != after.unShowVideo) {
        const int show = after.unShowVideo ? 0 : 1;
        launchTask(state, hooks, [hide = hooks.sendHideCommand, show, index] { if (hide) hide(1, show, index); });
    }
    // The window rectangle, display, drawOptionsButtons and autoRun count
    // from the stream's next start.
}

} // namespace vx::core
