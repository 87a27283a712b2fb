#pragma once
// One stream's persisted settings, as kept in vx_stream<id>.json: the common
// part, the recognition part and the control part with its four signals.
// The initial values here are those of a fresh stream; an old file read with
// keys missing gets the reader's defaults, which differ in places.
#include <array>
#include <cstdint>
#include <string>

#include "config/date_time.h"
#include "config/receiver_sample.h"

namespace vx::config {

struct CameraCommon {
    std::string videoName;
    std::string videoPath;
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::int32_t xWindow = 100;
    std::int32_t yWindow = 100;
    std::int32_t widthWindow = 800;
    std::int32_t heightWindow = 600;
    std::int32_t display = 0;
    float fps = 5.0f;
    bool reconnect = false;
    std::int32_t secondsToReconnect = 1;
    std::int32_t attempts = 0;
    bool unShowVideo = false;
    bool showConsole = false;
    std::int32_t ID = 0;
    bool autoRun = false;
    bool aspect = false;
    bool drawOptionsButtons = false;
    bool onlyVideoStream = false;
    bool writeVideo = false;
    bool writeOnlyNumObj = false;
    bool writeTransport = false;
    bool writePerson = false;
    std::int32_t videoChunk = 0;
    std::int32_t widthWrite = 0;
    std::int32_t heightWrite = 0;
    bool tcp = false;
    bool decodeNvidia = false;
    bool decodeDirectX = false;
};

struct CameraRecognition {
    bool unShowResultVideo = false;
    bool debugModeRecog = false;
    std::int32_t method = 1;
    std::int32_t delaySendSame = 1000;
    std::int32_t trajTypeSpeed = 0;
    std::int32_t tLimitTime = 10;
    std::int32_t tLimitFrames = 100;
    float minConf = 0.5f;
    std::int32_t showTime = 1000;
    bool Square = false;
    float minSquare = 0.0f;
    float maxSquare = 1.0f;
    bool useZone = false;
    float x = 0.0f;
    float y = 0.0f;
    float width = 1.0f;
    float height = 1.0f;
    float linesY = 0.5f;
    float lineAlfa = 0.0f;
    float lineDist = 0.05f;
    bool invert = false;
    std::int32_t portServer = 1234;
    float timeoutServerRecog = 4.0f;
    bool deleteBorderNumbers = true;
    bool deleteNumbersWidthoutTemplate = false;
    bool noDeleteWithChina = false;
};

struct SignalConfig {
    std::int32_t numSignal = 0;
    bool on = false;
    std::string name;
    bool typeOpen = true;
    bool typeSendAll = true;
    std::string nameWhiteList = "Empty";
    ReceiverSample signal;   // the request: signal.typeRequest is signal.type
    std::int32_t timeOutClose = 10000;
    bool notSendClose = false;
    std::int32_t timeOutSend = 500;
    bool noWhiteSignal = false;
    std::int32_t minTimeOutBWSignals = 0;
    std::int32_t conditionsSignals = 0;
    bool allSignalsFlag = false;
};

// The ControlReport and Buttons sections, the four signal slots and the
// control service's port.
struct CameraControl {
    std::int32_t ControlPortServer = 1235;
    bool onlyOneNumber = false;
    bool whiteLists = false;
    std::int32_t timeMinBetweenSimilarCar = 120;
    std::int32_t timeMinStop = 30;
    bool dailyReport = false;
    bool notDelMoveGroup = true;
    float notDelMoveGroupQualThresh = 0.7f;
    DateTime timeDailyReport{};
    DateTime timeReportStart{};
    DateTime timeReportEnd{};
    std::array<SignalConfig, 4> Control{};
    bool buttonOpen = false;
    std::int32_t buttonOpenSignal = 0;
    bool buttonClose = false;
    std::int32_t buttonCloseSignal = 0;
};

struct CameraConfig {
    CameraCommon common;
    CameraRecognition recognition;
    CameraControl control;
};

// "vx_stream<id>.json", and the same below `configDirectory`.
std::string cameraFileName(std::int32_t id);
std::string cameraFilePath(const std::string& configDirectory, std::int32_t id);

// The file's text exactly as saveCamera writes it. The ports written are the
// services' current ones (`recognitionPort` as portServer, `controlPort` as
// ControlPortServer), not the camera's own fields, so every save hands the
// stream process the ports in force.
std::string cameraConfigText(const CameraConfig& config, std::int32_t recognitionPort, std::int32_t controlPort);

// Writes `config` to the full path `path` under the cameras' lock.
bool saveCamera(const std::string& path, const CameraConfig& config, std::int32_t recognitionPort,
                std::int32_t controlPort);

// Reads the file at `path` into `config`. The common part starts from a
// fresh record's values; the other sections take the reader's defaults,
// which differ from a fresh record's in places. A videoChunk of 0 takes
// `mainVideoChunk` (the main config's). Signal slots beyond the file's
// array keep what they held; an absent Buttons section clears the buttons.
// False when the file won't open or can't be read (nothing is written then);
// the fields read before an error keep their new values.
bool loadCamera(const std::string& path, CameraConfig& config, std::int32_t mainVideoChunk);

} // namespace vx::config
