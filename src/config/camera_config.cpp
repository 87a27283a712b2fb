#include "config/camera_config.h"

#include <algorithm>

#include "config/config_file.h"
#include "config/json_text.h"
#include "config/number_format.h"
#include "config/text_codec.h"

namespace vx::config {
namespace {

using nlohmann::json;

// Lines of one block at a given depth; every line but the block's last ends
// in a comma.
class Block {
public:
    Block(std::string& text, int depth) : text_(text), indent_(static_cast<std::size_t>(depth), '\t') {}
    void raw(const char* key, const std::string& value, bool last = false) {
        text_ += indent_ + "\"" + key + "\":" + value + (last ? "\n" : ",\n");
    }
    void text(const char* key, const std::string& value, bool last = false) { raw(key, "\"" + value + "\"", last); }
    void number(const char* key, std::int32_t value, bool last = false) { raw(key, std::to_string(value), last); }
    void real(const char* key, float value, bool last = false) { raw(key, formatReal(value), last); }
    void flag(const char* key, bool value, bool last = false) { raw(key, value ? "true" : "false", last); }

private:
    std::string& text_;
    std::string indent_;
};

// The reader's second collapse of a path: each pair of backslashes becomes
// one, scanning left to right.
std::string collapseBackslashes(const std::string& text) {
    std::string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        out.push_back(text[i]);
        if (text[i] == '\\' && i + 1 < text.size() && text[i + 1] == '\\') ++i;
    }
    return out;
}

std::string readText(const json& section, const char* key) {
    return utf8ToCp1251(section.value(key, std::string()));
}

// A date-time takes year 0 first; a text that parses replaces the record.
void readDateTime(const json& section, const char* key, DateTime& value) {
    value.year = 0;
    parseDateTime(section.value(key, std::string()), value);
}

void readCommon(json& j, CameraCommon& c, std::int32_t mainVideoChunk) {
    c = CameraCommon{};
    json& s = j["Common"];
    c.videoName = readText(s, "videoName");
    c.videoPath = collapseBackslashes(readText(s, "videoPath"));
    c.width = s.value("width", c.width);
    c.height = s.value("height", c.height);
    c.xWindow = s.value("xWindow", c.xWindow);
    c.yWindow = s.value("yWindow", c.yWindow);
    c.widthWindow = s.value("widthWindow", c.widthWindow);
    c.heightWindow = s.value("heightWindow", c.heightWindow);
    c.display = s.value("display", c.display);
    c.fps = s.value("fps", c.fps);
    c.reconnect = s.value("reconnect", c.reconnect);
    c.secondsToReconnect = s.value("secondsToReconnect", c.secondsToReconnect);
    c.attempts = s.value("attempts", c.attempts);
    c.unShowVideo = s.value("unShowVideo", c.unShowVideo);
    c.showConsole = s.value("showConsole", c.showConsole);
    c.ID = s.value("ID", c.ID);
    c.autoRun = s.value("autoRun", c.autoRun);
    c.aspect = s.value("aspect", c.aspect);
    c.drawOptionsButtons = s.value("drawOptionsButtons", c.drawOptionsButtons);
    c.onlyVideoStream = s.value("onlyVideoStream", c.onlyVideoStream);
    c.writeVideo = s.value("writeVideo", c.writeVideo);
    c.writeOnlyNumObj = s.value("writeOnlyNumObj", c.writeOnlyNumObj);
    c.writeTransport = s.value("writeTransport", c.writeTransport);
    c.writePerson = s.value("writePerson", c.writePerson);
    c.videoChunk = s.value("videoChunk", c.videoChunk);
    if (c.videoChunk == 0) c.videoChunk = mainVideoChunk;
    c.widthWrite = s.value("widthWrite", c.widthWrite);
    c.heightWrite = s.value("heightWrite", c.heightWrite);
    c.tcp = s.value("tcp", c.tcp);
    c.decodeNvidia = s.value("decodeNvidia", c.decodeNvidia);
    c.decodeDirectX = s.value("decodeDirectX", c.decodeDirectX);
}

// The defaults here are the reader's, which differ from a fresh record's in
// method, minConf, lineDist and timeoutServerRecog.
void readRecognition(json& j, CameraRecognition& r) {
    json& s = j["Recognition"];
    r.unShowResultVideo = s.value("unShowResultVideo", false);
    r.debugModeRecog = s.value("debugModeRecog", false);
    r.method = s.value("method", std::int32_t{0});
    r.delaySendSame = s.value("delaySendSame", std::int32_t{1000});
    r.trajTypeSpeed = s.value("trajTypeSpeed", std::int32_t{0});
    r.tLimitTime = s.value("tLimitTime", std::int32_t{10});
    r.tLimitFrames = s.value("tLimitFrames", std::int32_t{100});
    r.minConf = s.value("minConf", 0.3f);
    r.showTime = s.value("showTime", std::int32_t{1000});
    r.Square = s.value("Square", false);
    r.minSquare = s.value("minSquare", 0.0f);
    r.maxSquare = s.value("maxSquare", 1.0f);
    r.useZone = s.value("useZone", false);
    r.x = s.value("x", 0.0f);
    r.y = s.value("y", 0.0f);
    r.width = s.value("width", 1.0f);
    r.height = s.value("height", 1.0f);
    r.linesY = s.value("linesY", 0.5f);
    r.lineAlfa = s.value("lineAlfa", 0.0f);
    r.lineDist = s.value("lineDist", 0.0f);
    r.invert = s.value("invert", false);
    r.portServer = s.value("portServer", std::int32_t{1234});
    r.timeoutServerRecog = s.value("timeoutServerRecog", 0.4f);
    r.deleteBorderNumbers = s.value("deleteBorderNumbers", true);
    r.deleteNumbersWidthoutTemplate = s.value("deleteNumbersWidthoutTemplate", false);
    r.noDeleteWithChina = s.value("noDeleteWithChina", false);
}

void readReport(json& j, CameraControl& c) {
    c.ControlPortServer = j.value("ControlPortServer", std::int32_t{1235});
    json& s = j["ControlReport"];
    c.onlyOneNumber = s.value("onlyOneNumber", false);
    c.whiteLists = s.value("whiteLists", false);
    c.timeMinBetweenSimilarCar = s.value("timeMinBetweenSimilarCar", std::int32_t{120});
    c.timeMinStop = s.value("timeMinStop", std::int32_t{180});
    c.dailyReport = s.value("dailyReport", false);
    c.notDelMoveGroup = s.value("notDelMoveGroup", false);
    c.notDelMoveGroupQualThresh = s.value("notDelMoveGroupQualThresh", 0.7f);
    readDateTime(s, "timeDailyReport", c.timeDailyReport);
    readDateTime(s, "timeReportStart", c.timeReportStart);
    readDateTime(s, "timeReportEnd", c.timeReportEnd);
}

// One slot; the receiver's name isn't in the file and stays as it was.
void readSignal(const json& e, std::int32_t index, SignalConfig& s) {
    s.numSignal = e.value("numSignal", index);
    s.on = e.value("on", false);
    s.name = readText(e, "name");
    s.typeOpen = e.value("typeOpen", false);
    s.typeSendAll = e.value("typeSendAll", false);
    s.nameWhiteList = utf8ToCp1251(e.value("nameWhiteList", std::string("Empty")));
    s.signal.type = e.value("signal.typeRequest", std::int32_t{0});
    s.signal.URL = readText(e, "signal.URL");
    s.signal.body = unescapeJsonText(readText(e, "signal.body"));
    s.signal.bodyEncoding = e.value("signal.bodyEncoding", std::int32_t{0});
    s.signal.image = e.value("signal.image", false);
    s.signal.smallImage = e.value("signal.smallImage", false);
    s.signal.plateImage = e.value("signal.plateImage", false);
    s.signal.carImage = e.value("signal.carImage", false);
    s.signal.contentType = e.value("signal.contentType", std::int32_t{0});
    s.timeOutClose = e.value("timeOutClose", std::int32_t{10000});
    s.notSendClose = e.value("notSendClose", false);
    s.timeOutSend = e.value("timeOutSend", std::int32_t{500});
    s.noWhiteSignal = e.value("noWhiteSignal", false);
    s.minTimeOutBWSignals = e.value("minTimeOutBWSignals", std::int32_t{0});
    s.conditionsSignals = e.value("conditionsSignals", std::int32_t{0});
    s.allSignalsFlag = e.value("allSignalsFlag", false);
}

// Slots beyond the array's end keep what they held; elements beyond four
// are ignored. A missing array yields no slots; one that isn't an array
// fails on its first element.
void readSignals(json& j, CameraControl& c) {
    json& control = j["Control"];
    const std::size_t count = std::min(control.size(), c.Control.size());
    for (std::size_t i = 0; i < count; ++i)
        readSignal(control[i], static_cast<std::int32_t>(i), c.Control[i]);
}

// The one section an older file may lack.
void readButtons(json& j, CameraControl& c) {
    if (!j.contains("Buttons")) {
        c.buttonOpen = false;
        c.buttonOpenSignal = 0;
        c.buttonClose = false;
        c.buttonCloseSignal = 0;
        return;
    }
    json& s = j["Buttons"];
    c.buttonOpen = s.value("buttonOpen", false);
    c.buttonOpenSignal = s.value("buttonOpenSignal", std::int32_t{0});
    c.buttonClose = s.value("buttonClose", false);
    c.buttonCloseSignal = s.value("buttonCloseSignal", std::int32_t{0});
}

void writeCommon(std::string& t, const CameraCommon& c) {
    t += "\t\"Common\":{\n";
    Block b(t, 2);
    b.text("videoName", cp1251ToUtf8(c.videoName));
    b.text("videoPath", doubleBackslashes(cp1251ToUtf8(c.videoPath)));
    b.number("width", c.width);
    b.number("height", c.height);
    b.number("xWindow", c.xWindow);
    b.number("yWindow", c.yWindow);
    b.number("widthWindow", c.widthWindow);
    b.number("heightWindow", c.heightWindow);
    b.number("display", c.display);
    b.real("fps", c.fps);
    b.flag("reconnect", c.reconnect);
    b.number("secondsToReconnect", c.secondsToReconnect);
    b.number("attempts", c.attempts);
    b.flag("unShowVideo", c.unShowVideo);
    b.flag("showConsole", c.showConsole);
    b.flag("autoRun", c.autoRun);
    b.flag("aspect", c.aspect);
    b.flag("onlyVideoStream", c.onlyVideoStream);
    b.flag("drawOptionsButtons", c.drawOptionsButtons);
    b.flag("writeVideo", c.writeVideo);
    b.flag("writeOnlyNumObj", c.writeOnlyNumObj);
    b.flag("writeTransport", c.writeTransport);
    b.flag("writePerson", c.writePerson);
    b.number("videoChunk", c.videoChunk);
    b.number("widthWrite", c.widthWrite);
    b.number("heightWrite", c.heightWrite);
    b.flag("tcp", c.tcp);
    b.flag("decodeNvidia", c.decodeNvidia);
    b.flag("decodeDirectX", c.decodeDirectX);
    b.number("ID", c.ID, true);
    t += "\t},\n";
}

void writeRecognition(std::string& t, const CameraRecognition& r, std::int32_t recognitionPort) {
    t += "\t\"Recognition\":{\n";
    Block b(t, 2);
    b.flag("unShowResultVideo", r.unShowResultVideo);
    b.flag("debugModeRecog", r.debugModeRecog);
    b.number("method", r.method);
    b.number("delaySendSame", r.delaySendSame);
    b.number("trajTypeSpeed", r.trajTypeSpeed);
    b.number("tLimitTime", r.tLimitTime);
    b.number("tLimitFrames", r.tLimitFrames);
    b.real("minConf", r.minConf);
    b.number("showTime", r.showTime);
    b.flag("Square", r.Square);
    b.real("minSquare", r.minSquare);
    b.real("maxSquare", r.maxSquare);
    b.flag("useZone", r.useZone);
    b.real("x", r.x);
    b.real("y", r.y);
    b.real("width", r.width);
    b.real("height", r.height);
    b.real("linesY", r.linesY);
    b.real("lineAlfa", r.lineAlfa);
    b.real("lineDist", r.lineDist);
    b.number("portServer", recognitionPort);   // the service's port, not the field
    b.real("timeoutServerRecog", r.timeoutServerRecog);
    b.flag("deleteBorderNumbers", r.deleteBorderNumbers);
    b.flag("deleteNumbersWidthoutTemplate", r.deleteNumbersWidthoutTemplate);
    b.flag("noDeleteWithChina", r.noDeleteWithChina);
    b.flag("invert", r.invert, true);
    t += "\t},\n";
}

void writeReport(std::string& t, const CameraControl& c) {
    t += "\t\"ControlReport\":{\n";
    Block b(t, 2);
    b.flag("onlyOneNumber", c.onlyOneNumber);
    b.flag("whiteLists", c.whiteLists);
    b.number("timeMinBetweenSimilarCar", c.timeMinBetweenSimilarCar);
    b.number("timeMinStop", c.timeMinStop);
    b.flag("dailyReport", c.dailyReport);
    b.flag("notDelMoveGroup", c.notDelMoveGroup);
    b.real("notDelMoveGroupQualThresh", c.notDelMoveGroupQualThresh);
    b.text("timeDailyReport", formatDateTime(c.timeDailyReport));
    b.text("timeReportStart", formatDateTime(c.timeReportStart));
    b.text("timeReportEnd", formatDateTime(c.timeReportEnd), true);
    t += "\t},\n";
}

void writeSignal(std::string& t, const SignalConfig& s, std::int32_t index) {
    Block b(t, 3);
    b.number("numSignal", index);   // the slot's index, not the field
    b.flag("on", s.on);
    b.text("name", cp1251ToUtf8(s.name));
    b.flag("typeOpen", s.typeOpen);
    b.flag("typeSendAll", s.typeSendAll);
    b.text("nameWhiteList", cp1251ToUtf8(s.nameWhiteList));
    b.number("timeOutClose", s.timeOutClose);
    b.flag("notSendClose", s.notSendClose);
    b.number("timeOutSend", s.timeOutSend);
    b.flag("noWhiteSignal", s.noWhiteSignal);
    b.flag("allSignalsFlag", s.allSignalsFlag);
    b.number("minTimeOutBWSignals", s.minTimeOutBWSignals);
    b.number("conditionsSignals", s.conditionsSignals);
    b.number("signal.typeRequest", s.signal.type);
    b.text("signal.URL", cp1251ToUtf8(s.signal.URL));
    b.text("signal.body", escapeJsonText(cp1251ToUtf8(s.signal.body)));
    b.number("signal.bodyEncoding", s.signal.bodyEncoding);
    b.flag("signal.image", s.signal.image);
    b.flag("signal.smallImage", s.signal.smallImage);
    b.flag("signal.plateImage", s.signal.plateImage);
    b.number("signal.contentType", s.signal.contentType);
    b.flag("signal.carImage", s.signal.carImage, true);
}

void writeButtons(std::string& t, const CameraControl& c) {
    t += "\t\"Buttons\":{\n";
    Block b(t, 2);
    b.flag("buttonOpen", c.buttonOpen);
    b.number("buttonOpenSignal", c.buttonOpenSignal);
    b.flag("buttonClose", c.buttonClose);
    b.number("buttonCloseSignal", c.buttonCloseSignal, true);
    t += "\t}\n";
}

void takeCamera(json& j, CameraConfig& config, std::int32_t mainVideoChunk) {
    readCommon(j, config.common, mainVideoChunk);
    readRecognition(j, config.recognition);
    readReport(j, config.control);
    readSignals(j, config.control);
    readButtons(j, config.control);
}

} // namespace

std::string cameraFileName(std::int32_t id) { return "vx_stream" + std::to_string(id) + ".json"; }

std::string cameraFilePath(const std::string& configDirectory, std::int32_t id) {
    return configFilePath(configDirectory, cameraFileName(id));
}

std::string cameraConfigText(const CameraConfig& config, std::int32_t recognitionPort, std::int32_t controlPort) {
    std::string t = "{\n";
    t += "\t\"name\":\"CameraConfig\",\n";
    t += "\t\"version\":1,\n";
    writeCommon(t, config.common);
    writeRecognition(t, config.recognition, recognitionPort);
    t += "\t\"ControlPortServer\":" + std::to_string(controlPort) + ",\n";
    writeReport(t, config.control);
    t += "\t\"Control\":[\n";
    for (std::size_t i = 0; i < config.control.Control.size(); ++i) {
        t += "\t\t{\n";
        writeSignal(t, config.control.Control[i], static_cast<std::int32_t>(i));
        t += i + 1 < config.control.Control.size() ? "\t\t},\n" : "\t\t}\n";
    }
    t += "\t],\n";
    writeButtons(t, config.control);
    t += "}";
    return t;
}

bool saveCamera(const std::string& path, const CameraConfig& config, std::int32_t recognitionPort,
                std::int32_t controlPort) {
    auto readsBack = [](json& j) {
        CameraConfig scratch;
        takeCamera(j, scratch, 0);
    };
    return writeJsonConfigFile(cameraConfigMutexName, path, cameraConfigText(config, recognitionPort, controlPort),
                               SafetyCopy::none, readsBack);
}

bool loadCamera(const std::string& path, CameraConfig& config, std::int32_t mainVideoChunk) {
    ConfigReadRequest request;
    request.mutexName = cameraConfigMutexName;
    request.path = path;
    request.readerName = "loadCamera";
    const ReadOutcome outcome =
        readConfigFile(request, [&](json& j) { takeCamera(j, config, mainVideoChunk); });
    return outcome == ReadOutcome::done;
}

} // namespace vx::config
