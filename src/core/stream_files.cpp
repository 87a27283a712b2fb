#include "core/stream_files.h"

#include "config/camera_config.h"
#include "config/main_config.h"
#include "core/save_failure.h"

namespace vx::core {

bool loadStreamFile(AppState& state, std::int32_t id)
{
    return config::loadCamera(config::cameraFilePath(state.ConfigDirectory, id), state.workingCamera,
                              state.liveMainConfig.videoChunk);
}

bool writeStreamFile(AppState& state, std::int32_t index, std::string* unsavedFile)
{
    // A default record for a bad index would land in vx_stream0.json.
    if (!state.streams.validIndex(index))
        return true;
    config::CameraConfig& working = state.workingCamera;
    working.common = state.streams.getConfig(index);
    working.recognition = state.streams.getRecognition(index);
    working.control = state.streams.getControl(index);
    const std::string cameraFile = config::cameraFileName(working.common.ID);
    const bool cameraSaved = noteSave(config::saveCamera(config::cameraFilePath(state.ConfigDirectory, working.common.ID),
                                                         working, state.recognitionConfig.port,
                                                         state.controlConfig.port),
                                      cameraFile);
    const bool mainSaved = noteSave(config::saveConfig(state.ConfigDirectory, state.storedMainConfig,
                                                       state.streams.collectIds(), state.streams.collectPlanned()),
                                    config::mainConfigFileName);
    if (unsavedFile && !(cameraSaved && mainSaved))
        *unsavedFile = cameraSaved ? config::mainConfigFileName : cameraFile;
    return cameraSaved && mainSaved;
}

void rewriteAllStreams(AppState& state)
{
    for (std::int32_t index = 0; index < state.streams.size(); ++index)
        writeStreamFile(state, index);
}

} // namespace vx::core
