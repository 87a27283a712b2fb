#include "config/main_config.h"

#include "config/config_file.h"
#include "config/json_text.h"
#include "config/text_codec.h"

namespace vx::config {
namespace {

const char* boolText(bool value) { return value ? "true" : "false"; }

std::string pathValue(const std::string& cp1251) { return doubleBackslashes(cp1251ToUtf8(cp1251)); }

// A text key: absent keeps the field; the file's UTF-8 becomes 1251.
void takeText(nlohmann::json& document, const char* key, std::string& field)
{
    field = utf8ToCp1251(document.value(key, cp1251ToUtf8(field)));
}

template <typename T>
void takeValue(nlohmann::json& document, const char* key, T& field)
{
    field = document.value(key, field);
}

// A negative fraction has no unsigned value (converting it is undefined): the
// key then reads as one of the wrong type.
void takeValue(nlohmann::json& document, const char* key, std::uint32_t& field)
{
    const auto found = document.find(key);
    if (found != document.end() && found->is_number_float() && found->get<double>() <= -1.0)
        *found = "out of range";
    field = document.value(key, field);
}

void takeMainConfig(nlohmann::json& document, MainConfig& c, const MainConfigFolders& folders)
{
    takeText(document, "systemLogPath", c.systemLogPath);
    takeText(document, "recogLogPath", c.recogLogPath);
    takeText(document, "reportsPath", c.reportsPath);
    takeText(document, "videoPath", c.videoPath);
    if (c.videoPath.empty())
        c.videoPath = folders.videoPath;
    takeText(document, "recogFormat", c.recogFormat);
    takeText(document, "dataTimeFormat", c.dataTimeFormat);
    takeValue(document, "systemLevel", c.systemLevel);
    if (c.systemLevel < 0 || c.systemLevel > 5)
        c.systemLevel = 0;
    takeValue(document, "saveImage", c.saveImage);
    takeValue(document, "videoChunk", c.videoChunk);
    takeValue(document, "maxSizeVideoDirectoryMb", c.maxSizeVideoDirectoryMb);
    takeValue(document, "autoRunManager", c.autoRunManager);
    takeValue(document, "startStatus", c.startStatus);
    takeValue(document, "globalRestart", c.globalRestart);
    takeValue(document, "sizeImage", c.sizeImage);
    if (c.sizeImage < 0 || c.sizeImage > 4)
        c.sizeImage = 0;
    takeValue(document, "timeLife", c.timeLife);
    if (c.timeLife < 0)
        c.timeLife = 0;
    takeValue(document, "divideLogRecog", c.divideLogRecog);
    if (c.divideLogRecog < 0 || c.divideLogRecog > 1)
        c.divideLogRecog = 0;
    // Both lists must be there as arrays: an absent key reads as null, and
    // null (or any other type) ends the read here with a type error. The
    // file names are taken as they stand, without a conversion.
    c.videoStreams = document["videoStreams"].get<std::vector<std::string>>();
    c.autoRunStreams = document["autoRunStreams"].get<std::vector<bool>>();
    c.xWindow = document.value("xWindow", std::int32_t{-1});
    c.yWindow = document.value("yWindow", std::int32_t{-1});
    c.wWindow = document.value("wWindow", std::int32_t{-1});
    c.hWindow = document.value("hWindow", std::int32_t{-1});
    c.display = document.value("display", std::int32_t{0});
    c.perfLog = document.value("perfLog", std::int32_t{0});
}

} // namespace

MainConfigFolders derivedFolders(const std::string& folder)
{
    const std::string logs = configFilePath(folder, "logs");
    return {logs, logs, configFilePath(folder, "reports"), configFilePath(folder, "videos")};
}

std::string mainConfigText(const MainConfig& c, const std::vector<std::int32_t>& streamIds,
                           const std::vector<bool>& autoRun, std::vector<std::string>& videoStreams)
{
    std::string t = "{\n";
    auto line = [&t](const std::string& key, const std::string& value) {
        t += "\t\"" + key + "\":" + value + ",\n";
    };
    auto text = [&line](const std::string& key, const std::string& value) { line(key, "\"" + value + "\""); };
    text("name", "MainConfig");
    line("version", "1");
    text("systemLogPath", pathValue(c.systemLogPath));
    line("systemLevel", std::to_string(c.systemLevel));
    text("recogLogPath", pathValue(c.recogLogPath));
    text("recogFormat", cp1251ToUtf8(c.recogFormat));
    text("dataTimeFormat", cp1251ToUtf8(c.dataTimeFormat));
    text("reportsPath", pathValue(c.reportsPath));
    text("videoPath", pathValue(c.videoPath));
    line("saveImage", boolText(c.saveImage));
    line("sizeImage", std::to_string(c.sizeImage));
    line("timeLife", std::to_string(c.timeLife));
    line("videoChunk", std::to_string(c.videoChunk));
    line("maxSizeVideoDirectoryMb", std::to_string(c.maxSizeVideoDirectoryMb));
    line("divideLogRecog", std::to_string(c.divideLogRecog));
    line("autoRunManager", boolText(c.autoRunManager));
    line("startStatus", boolText(c.startStatus));
    line("globalRestart", boolText(c.globalRestart));
    line("xWindow", std::to_string(c.xWindow));
    line("yWindow", std::to_string(c.yWindow));
    line("wWindow", std::to_string(c.wWindow));
    line("hWindow", std::to_string(c.hWindow));
    line("display", std::to_string(c.display));
    line("perfLog", std::to_string(c.perfLog));

    videoStreams.clear();
    t += "\t\"videoStreams\":[\n";
    for (std::size_t i = 0; i < streamIds.size(); ++i) {
        const std::string name = "vx_stream" + std::to_string(streamIds[i]) + ".json";
        videoStreams.push_back(name);
        t += "\t\t\"" + name + "\"" + (i + 1 < streamIds.size() ? ",\n" : "\n");
    }
    t += "\t],\n";
    t += "\t\"autoRunStreams\":[\n";
    for (std::size_t i = 0; i < autoRun.size(); ++i)
        t += std::string("\t\t") + boolText(autoRun[i]) + (i + 1 < autoRun.size() ? ",\n" : "\n");
    t += "\t]\n";
    t += "}";
    return t;
}

bool saveConfig(const std::string& configDirectory, MainConfig& config,
                std::vector<std::int32_t> streamIds, std::vector<bool> autoRun)
{
    std::vector<std::string> videoStreams;
    const std::string text = mainConfigText(config, streamIds, autoRun, videoStreams);
    // The reader's key taking runs over the new text into a scratch record, so
    // a text loadConfig would refuse never replaces the file or its .tmp.
    auto readsBack = [](nlohmann::json& document) {
        MainConfig scratch;
        takeMainConfig(document, scratch, MainConfigFolders{});
    };
    if (!writeJsonConfigFile(mainConfigMutexName, configFilePath(configDirectory, mainConfigFileName), text,
                             SafetyCopy::keepPrevious, readsBack))
        return false;
    config.videoStreams = std::move(videoStreams);
    config.autoRunStreams = std::move(autoRun);
    return true;
}

bool loadConfig(const std::string& folder, const std::string& configDirectory, MainConfig& config,
                MainConfigFolders& folders)
{
    folders = derivedFolders(folder);
    ConfigReadRequest request;
    request.mutexName = mainConfigMutexName;
    request.path = configFilePath(configDirectory, mainConfigFileName);
    request.readerName = "loadConfig";
    request.writeDefaults = [&] {
        config.systemLogPath = folders.systemLogPath;
        config.recogLogPath = folders.recogLogPath;
        config.reportsPath = folders.reportsPath;
        config.videoPath = folders.videoPath;
        saveConfig(configDirectory, config, {}, {});
    };
    return readConfigFile(request, [&](nlohmann::json& document) { takeMainConfig(document, config, folders); }) ==
           ReadOutcome::done;
}

} // namespace vx::config
