#pragma once
// A camera record with every field away from its default: written, it is
// the golden vx_stream7.json. The signals' numbers run against their slots:
// the file holds the slot index.
#include <string>

#include "config/camera_config.h"
#include "config/text_codec.h"

namespace vx::config {

// A body with quotes, backslashes (before letters the second unescape leaves
// alone), a tab and a CR LF line break.
inline const std::string awayBody = "{\"plate\":\"{plate}\",\"path\":\"C:\\data\\in\"}\r\nline2\ttab";

inline CameraConfig awayFromDefaults()
{
    CameraConfig c;
    CameraCommon& m = c.common;
    m.videoName = utf8ToCp1251("Въезд 1");
    m.videoPath = "C:\\video\\gate.mp4";
    m.width = 1920; m.height = 1080; m.xWindow = 10; m.yWindow = 20; m.widthWindow = 640;
    m.heightWindow = 480; m.display = 1; m.fps = 12.5f; m.reconnect = true; m.secondsToReconnect = 5;
    m.attempts = 3; m.unShowVideo = true; m.showConsole = true; m.ID = 7; m.autoRun = true; m.aspect = true;
    m.drawOptionsButtons = true; m.onlyVideoStream = true; m.writeVideo = true; m.writeOnlyNumObj = true;
    m.writeTransport = true; m.writePerson = true; m.videoChunk = 600; m.widthWrite = 1280;
    m.heightWrite = 720; m.tcp = true; m.decodeNvidia = true; m.decodeDirectX = true;
    CameraRecognition& r = c.recognition;
    r.unShowResultVideo = true; r.debugModeRecog = true; r.method = 4; r.delaySendSame = 3000;
    r.trajTypeSpeed = 1; r.tLimitTime = 20; r.tLimitFrames = 200; r.minConf = 0.65f; r.showTime = 2000;
    r.Square = true; r.minSquare = 0.01f; r.maxSquare = 0.5f; r.useZone = true; r.x = 0.1f; r.y = 0.2f;
    r.width = 0.7f; r.height = 0.6f; r.linesY = 0.4f; r.lineAlfa = 15.5f; r.lineDist = 0.1f; r.invert = true;
    r.portServer = 9999; r.timeoutServerRecog = 2.5f; r.deleteBorderNumbers = false;
    r.deleteNumbersWidthoutTemplate = true; r.noDeleteWithChina = true;
    CameraControl& k = c.control;
    k.ControlPortServer = 8888; k.onlyOneNumber = true; k.whiteLists = true; k.timeMinBetweenSimilarCar = 60;
    k.timeMinStop = 45; k.dailyReport = true; k.notDelMoveGroup = false; k.notDelMoveGroupQualThresh = 0.85f;
    k.timeDailyReport = {2024, 3, 0, 7, 9, 5, 1, 0};
    k.timeReportStart = {2024, 1, 0, 1, 0, 0, 0, 0};
    k.timeReportEnd = {2024, 12, 0, 31, 23, 59, 59, 0};
    for (int i = 0; i < 4; ++i) {
        SignalConfig& s = k.Control[static_cast<std::size_t>(i)];
        s.numSignal = 3 - i; s.on = true; s.name = utf8ToCp1251("Сигнал " + std::to_string(i));
        s.typeOpen = false; s.typeSendAll = false; s.nameWhiteList = utf8ToCp1251("Гости");
        s.signal.type = 1; s.signal.URL = "http://10.0.0.9/api?plate={plate}&n=" + std::to_string(i);
        s.signal.body = awayBody; s.signal.bodyEncoding = 1; s.signal.image = true; s.signal.smallImage = false;
        s.signal.plateImage = true; s.signal.carImage = true; s.signal.contentType = 1;
        s.timeOutClose = 5000; s.notSendClose = true; s.timeOutSend = 700; s.noWhiteSignal = true;
        s.minTimeOutBWSignals = 30; s.conditionsSignals = 3; s.allSignalsFlag = true;
    }
    k.buttonOpen = true; k.buttonOpenSignal = 2; k.buttonClose = true; k.buttonCloseSignal = 3;
    return c;
}

} // namespace vx::config
