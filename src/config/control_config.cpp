#include "config/control_config.h"

#include "config/config_file.h"

namespace vx::config {
namespace {
const char* boolText(bool value) { return value ? "true" : "false"; }
}

std::string controlConfigText(const ControlSrvConfig& c)
{
    std::string t = "{\n";
    t += "\t\"name\":\"ControlSrvConfig\",\n";
    t += "\t\"version\":1,\n";
    t += "\t\"port\":" + std::to_string(c.port) + ",\n";
    t += "\t\"modeDB\":" + std::to_string(c.modeDB) + ",\n";
    t += std::string("\t\"equalLatinCyr\":") + boolText(c.equalLatinCyr) + ",\n";
    t += std::string("\t\"notReturnServSymb\":") + boolText(c.notReturnServSymb) + ",\n";
    t += std::string("\t\"autoUpdateListsInControl\":") + boolText(c.autoUpdateListsInControl) + ",\n";
    t += std::string("\t\"httpLogger\":") + boolText(c.httpLogger) + "\n";
    t += "}";
    return t;
}

// The reader's key taking, shared with the writer's read-back check.
static void takeControlGlobal(nlohmann::json& document, ControlSrvConfig& config)
{
    config.port = document.value("port", config.port);
    config.modeDB = document.value("modeDB", config.modeDB);
    config.httpLogger = document.value("httpLogger", config.httpLogger);
    config.equalLatinCyr = document.value("equalLatinCyr", config.equalLatinCyr);
    config.notReturnServSymb = document.value("notReturnServSymb", config.notReturnServSymb);
    config.autoUpdateListsInControl = document.value("autoUpdateListsInControl", config.autoUpdateListsInControl);
}

bool saveControlGlobal(const std::string& configDirectory, const ControlSrvConfig& config)
{
    auto readsBack = [](nlohmann::json& document) {
        ControlSrvConfig scratch;
        takeControlGlobal(document, scratch);
    };
    return writeJsonConfigFile(controlConfigMutexName, configFilePath(configDirectory, controlConfigFileName),
                               controlConfigText(config), SafetyCopy::none, readsBack);
}

bool loadControlGlobal(const std::string& configDirectory, ControlSrvConfig& config)
{
    ConfigReadRequest request;
    request.mutexName = controlConfigMutexName;
    request.path = configFilePath(configDirectory, controlConfigFileName);
    request.readerName = "loadControlGlobal";
    request.writeDefaults = [&] { saveControlGlobal(configDirectory, config); };
    const ReadOutcome outcome =
        readConfigFile(request, [&](nlohmann::json& document) { takeControlGlobal(document, config); });
    // A caught parse or type error still counts as loaded.
    return outcome == ReadOutcome::done || outcome == ReadOutcome::parseError ||
           outcome == ReadOutcome::typeError;
}

} // namespace vx::config
