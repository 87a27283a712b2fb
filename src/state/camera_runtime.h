#pragma once
// One stream in the manager: its persisted sections and its live state.
#include <cstdint>
#include <memory>

#include "config/camera_config.h"
#include "imaging/picture.h"
#include "state/stream_channel.h"

namespace vx::platform { class SharedBlock; }

namespace vx::core {

// A fresh record's common section: what a new stream starts with.
inline config::CameraCommon defaultCameraCommon() { return config::CameraCommon{}; }

struct CameraRuntime {
    std::int32_t id = 0;
    config::CameraCommon config = defaultCameraCommon();
    config::CameraRecognition recognition;
    config::CameraControl control;
    bool running = false;
    bool planned = true;
    StreamChannel channel;
    imaging::Picture image;        // copies share the pixels with the table
    // image stretched to the tile's side in four channels, made as it was
    // stored, and the image it was made from (held, so that its pixels'
    // address names it alone). Used only while that is still image and the
    // side still the tiles' side.
    imaging::Picture tilePicture;
    imaging::Picture tilePictureSource;
    bool hasImage = false;
    std::int64_t lastImageTime = 0;   // seconds of calendar time
    // The stream's shared picture block, mapped on first use; released when
    // the record goes.
    std::shared_ptr<platform::SharedBlock> mapping;
};

} // namespace vx::core
