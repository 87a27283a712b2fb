#include "core/startup_streams.h"

#include "config/camera_config.h"
#include "config/config_file.h"
#include "config/messenger_config.h"
#include "config/receiver_samples.h"
#include "config/recognition_config.h"
#include "config/text_codec.h"
#include "config/white_list.h"
#include "maintenance/system_log.h"

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

void loadStreams(AppState& state)
{
    config::CameraConfig& working = state.workingCamera;
    const std::vector<std::string> names = state.liveMainConfig.videoStreams;
    std::int32_t p = 0;
    for (const std::string& name : names) {
        const std::int32_t position = p++;
        if (!config::loadCamera(config::configFilePath(state.ConfigDirectory, name), working,
                                state.liveMainConfig.videoChunk)) {
            VX_LOG(logError, "LoadCamera " + name + " error!");
            continue;
        }
        VX_LOG(logTrace, "LoadCamera " + name + " ok!");
        const config::CameraConfig loaded = working;
        std::int32_t id = loaded.common.ID;
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
