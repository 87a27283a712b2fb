#pragma once
// The two records the config write loop alternates between, and the texts
// the writers make of them, shared by the loop and the test that kills it.
#include <cstdint>
#include <string>
#include <vector>

#include "config/camera_config.h"
#include "config/config_file.h"
#include "config/control_config.h"
#include "config/main_config.h"
#include "config/messenger_config.h"
#include "config/recognition_config.h"

namespace vx::test {

struct ConfigWriteRecords {
    config::MainConfig main;
    config::CameraConfig camera;
    config::MessengersConfig messengers;
    config::RecognitionSrvConfig recognition;
    config::ControlSrvConfig control;
};

inline constexpr std::int32_t loopStreamId = 7;

// Version 0 or 1; the second differs in every file and in length, and is
// large enough that a write takes more than one system call's worth of luck.
inline ConfigWriteRecords configWriteRecords(int version)
{
    ConfigWriteRecords r;
    const std::string tag = version == 0 ? "first" : "second, a longer one";
    r.main.recogFormat = "%s " + tag;
    r.main.systemLogPath = "/var/log/" + std::string(version == 0 ? 10 : 300, 'a');
    r.camera.common.ID = loopStreamId;
    r.camera.common.videoName = "camera " + tag;
    r.camera.common.videoPath = std::string(version == 0 ? 20 : 2000, 'v');
    r.messengers.channels[0].name = "channel " + tag;
    r.messengers.channels[1].server = std::string(version == 0 ? 5 : 900, 's');
    r.recognition.port = version == 0 ? 4001 : 4002;
    r.control.port = version == 0 ? 5001 : 5002;
    return r;
}

inline const std::vector<std::int32_t> loopStreamIds{loopStreamId};

// Writes every file of `r` into `folder` with the manager's writers; false
// when any of them failed.
inline bool writeConfigRecords(const std::string& folder, ConfigWriteRecords& r)
{
    bool ok = config::saveConfig(folder, r.main, loopStreamIds, {true});
    ok = config::saveCamera(config::cameraFilePath(folder, loopStreamId), r.camera, 4000, 5000) && ok;
    ok = config::saveMessengers(folder, r.messengers) && ok;
    ok = config::saveRecogGlobal(folder, r.recognition) && ok;
    ok = config::saveControlGlobal(folder, r.control) && ok;
    return ok;
}

// File name -> text, for one version.
inline std::vector<std::pair<std::string, std::string>> configWriteTexts(int version)
{
    ConfigWriteRecords r = configWriteRecords(version);
    std::vector<std::string> streams;
    return {
        {config::mainConfigFileName, config::mainConfigText(r.main, loopStreamIds, {true}, streams)},
        {config::cameraFileName(loopStreamId), config::cameraConfigText(r.camera, 4000, 5000)},
        {config::messengersConfigFileName, config::messengersConfigText(r.messengers)},
        {config::recognitionConfigFileName, config::recognitionConfigText(r.recognition)},
        {config::controlConfigFileName, config::controlConfigText(r.control)},
    };
}

} // namespace vx::test
