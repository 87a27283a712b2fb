#include "core/startup_streams.h"

#include <filesystem>

#include "config/camera_config.h"
#include "config/config_file.h"
#include "config/main_config.h"
#include "config/messenger_config.h"
#include "config/receiver_samples.h"
#include "config/recognition_config.h"
#include "config/text_codec.h"
#include "config/white_list.h"
#include "maintenance/system_log.h"
#include "supervision/stream_control.h"

namespace vx::core {
namespace {

using maintenance::logError;
using maintenance::logTrace;

const char* const messageTitle = "Сообщение";
const char* const recognitionConfigFailed =
    "Конфигурационный файл для глобальных настроек распознавания не может быть загружен! "
    "Система не будет работать правильно!";
const char* const streamLoadFailed = "Ошибка в загрузке настроек видеопотока ";

} // namespace

namespace {

using maintenance::logWarning;

// The ID a videoStreams entry names when it is a stream file's own name
// ("vx_stream<id>.json"); -1 for any other name.
std::int32_t ownId(const std::string& name)
{
    const auto id = static_cast<std::int32_t>(supervision::streamIdFromEntry(name));
    return id >= 0 && config::cameraFileName(id) == name ? id : -1;
}

// The ID a stream whose file carries a taken ID gets: the one its file name
// says when that is free, else the lowest ID that no stream holds, no other
// entry names and no file on disk has.
std::int32_t freeIdFor(const AppState& state, const std::vector<std::string>& names, std::size_t position)
{
    auto namedElsewhere = [&](std::int32_t id) {
        for (std::size_t i = 0; i < names.size(); ++i)
            if (i != position && ownId(names[i]) == id)
                return true;
        return false;
    };
    const std::int32_t own = ownId(names[position]);
    if (own >= 0 && !state.streams.idTaken(own) && !namedElsewhere(own))
        return own;
    for (std::int32_t id = 0;; ++id)
        if (!state.streams.idTaken(id) && !namedElsewhere(id) &&
            !std::filesystem::exists(config::toNativePath(config::cameraFilePath(state.ConfigDirectory, id))))
            return id;
}

} // namespace

void loadStreams(AppState& state)
{
    config::CameraConfig& working = state.workingCamera;
    const std::vector<std::string> names = state.liveMainConfig.videoStreams;
    bool renamed = false;
    std::int32_t p = 0;
    for (const std::string& name : names) {
        const std::int32_t position = p++;
        if (!config::loadCamera(config::configFilePath(state.ConfigDirectory, name), working,
                                state.liveMainConfig.videoChunk)) {
            VX_LOG(logError, "LoadCamera " + name + " error!");
            // The stream stays listed and its ID taken, so that the next save
            // keeps it and no new stream takes over its file.
            const std::int32_t id = ownId(name);
            if (id >= 0 && !state.streams.idTaken(id)) {
                const std::vector<bool>& autoRun = state.liveMainConfig.autoRunStreams;
                state.streams.reserveUnloaded(id, static_cast<std::size_t>(position) < autoRun.size() &&
                                                      autoRun[static_cast<std::size_t>(position)]);
            }
            continue;
        }
        VX_LOG(logTrace, "LoadCamera " + name + " ok!");
        config::CameraConfig loaded = working;
        std::int32_t id = loaded.common.ID;
        if (state.streams.idTaken(id)) {
            // A copy of another stream's file: two streams under one ID would
            // write each other's file. This one goes to a file of its own;
            // the copy itself is left as it is.
            id = freeIdFor(state, names, static_cast<std::size_t>(position));
            const std::string file = config::cameraFileName(id);
            VX_LOG(logWarning, "LoadCamera " + name + " ID " + std::to_string(loaded.common.ID) +
                                   " is taken by another stream, loaded as " + file + " with ID " +
                                   std::to_string(id));
            loaded.common.ID = id;
            config::saveCamera(config::cameraFilePath(state.ConfigDirectory, id), loaded,
                               loaded.recognition.portServer, loaded.control.ControlPortServer);
            state.liveMainConfig.videoStreams[static_cast<std::size_t>(position)] = file;
            renamed = true;
        }
        if (state.streams.addStream(loaded.common, loaded.recognition, loaded.control, id, true)) {
            state.status.set(config::utf8ToCp1251(streamLoadFailed) + name);
            VX_LOG(logError, "AddCamera " + loaded.common.videoName + " error!");
            continue;
        }
        if (!loaded.common.autoRun && state.streams.validIndex(position)) {
            bool planned = false;
            state.streams.togglePlanned(position, planned);
        }
        VX_LOG(logTrace, "AddCamera " + loaded.common.videoName + " ok!");
    }
    if (renamed) {
        // The main config names the new file at once, so that the next start
        // doesn't meet the duplicate again.
        state.storedMainConfig = state.liveMainConfig;
        config::saveConfig(state.ConfigDirectory, state.storedMainConfig, state.streams.collectIds(),
                           state.streams.collectPlanned());
        state.liveMainConfig = state.storedMainConfig;
    }
}

void loadRecognitionConfigStep(AppState& state, const StartupHooks& hooks)
{
    if (config::loadRecogGlobal(state.ConfigDirectory, state.recognitionConfig)) {
        VX_LOG(logTrace, "loadRecogGlobal ok!");
    } else {
        VX_LOG(logError, "loadRecogGlobal error!");
        if (hooks.showMessage)
            hooks.showMessage(config::utf8ToCp1251(messageTitle), config::utf8ToCp1251(recognitionConfigFailed));
    }
    state.recognitionDialogCopy = state.recognitionConfig;
}

void loadReceiverSamplesStep(AppState& state)
{
    config::loadSignals(state.ConfigDirectory, state.receiverSamples, [] {
        std::lock_guard<std::mutex> lock(config::whiteListLock());
        config::WhiteListTable& table = config::whiteListTable();
        table.lists.clear();
        table.lookups.clear();
    });
}

void loadMessengersStep(AppState& state)
{
    config::loadMessengers(state.ConfigDirectory, state.messengersConfig, state.controlConfig.port);
    state.messengersDialogCopy = state.messengersConfig;
}

} // namespace vx::core
