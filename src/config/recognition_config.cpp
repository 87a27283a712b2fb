#include "config/recognition_config.h"

#include <algorithm>

#include "config/config_file.h"
#include "config/number_format.h"
#include "config/text_codec.h"

namespace vx::config {
namespace {

const char* const modelFiles[] = {
    "vxplate2dataconfig.json",
    "vxplate2dataconfigsmall.json",
    "vxplate2dataconfigmicro.json",
    "vxplate2dataconfignano.json",
};

std::int32_t limitModeConfig(std::int32_t value) { return std::clamp<std::int32_t>(value, 0, 3); }

const char* word(bool value) { return value ? "true" : "false"; }

// The flags as one line: ["ru","abh"], or [] with none set.
std::string plateTemplatesLine(const RecognitionSrvConfig& config) {
    std::string line = "[";
    for (std::size_t i = 0; i < plateTemplateCodes.size(); ++i)
        if (config.templates[i]) line += std::string("\"") + plateTemplateCodes[i] + "\",";
    if (line.size() > 1) line.pop_back();
    return line + "]";
}

} // namespace

std::string modelConfigName(std::int32_t modeConfig) { return modelFiles[limitModeConfig(modeConfig)]; }

std::string recognitionConfigText(const RecognitionSrvConfig& c) {
    const std::int32_t modeConfig = limitModeConfig(c.modeConfig);
    std::string t = "{\n";
    t += "\t\"name\":\"RecognitionSrvConfig\",\n";
    t += "\t\"versionIIS\":1,\n";
    t += "\t\"maxImagesInQueue\":10,\n";
    t += "\t\"gpuObjects\":" + std::to_string(c.gpuObjects) + ", \n";   // the one line with a blank
    t += "\t\"mode\":" + std::to_string(c.mode) + ",\n";
    t += "\t\"expandedResult\":1,\n";
    t += "\t\"detectConfThresh\":" + formatReal(c.detectConfThresh) + ",\n";
    t += "\t\"detectConfPerson\":" + formatReal(c.detectConfPerson) + ",\n";
    t += "\t\"detectConfVehicle\":" + formatReal(c.detectConfVehicle) + ",\n";
    t += "\t\"pathToConfigForLibrary\":\"" + cp1251ToUtf8(modelConfigName(modeConfig)) + "\",\n";
    t += "\t\"modeConfig\":" + std::to_string(modeConfig) + ",\n";
    t += "\t\"minPlateHeight\":" + std::to_string(c.minPlateHeight) + ",\n";
    t += "\t\"minPlateWidth\":" + std::to_string(c.minPlateWidth) + ",\n";
    t += "\t\"minSymbolsPlate\":" + std::to_string(c.minSymbolsPlate) + ",\n";
    t += "\t\"maxSymbolsPlate\":" + std::to_string(c.maxSymbolsPlate) + ",\n";
    t += std::string("\t\"turn\":") + word(c.turn) + ",\n";
    t += std::string("\t\"gpu\":") + word(c.gpu) + ",\n";
    t += std::string("\t\"bigSymbolModel\":") + word(c.bigSymbolModel) + ",\n";
    t += "\t\"port\":" + std::to_string(c.port) + ",\n";
    t += "\t\"plateTemplates\":" + plateTemplatesLine(c) + "\n";
    t += "}";
    return t;
}

// The reader's key taking, shared with the writer's read-back check.
static void takeRecogGlobal(nlohmann::json& j, RecognitionSrvConfig& config) {
    config.minPlateHeight = j.value("minPlateHeight", config.minPlateHeight);
    config.minPlateWidth = j.value("minPlateWidth", config.minPlateWidth);
    config.minSymbolsPlate = j.value("minSymbolsPlate", config.minSymbolsPlate);
    config.maxSymbolsPlate = j.value("maxSymbolsPlate", config.maxSymbolsPlate);
    config.detectConfThresh = j.value("detectConfThresh", config.detectConfThresh);
    config.detectConfPerson = j.value("detectConfPerson", config.detectConfPerson);
    config.detectConfVehicle = j.value("detectConfVehicle", config.detectConfVehicle);
    // An old file without the key takes the plate length as its object count.
    config.gpuObjects = j.value("gpuObjects", config.maxSymbolsPlate);
    config.port = j.value("port", config.port);
    config.turn = j.value("turn", config.turn);
    config.gpu = j.value("gpu", config.gpu);
    config.bigSymbolModel = j.value("bigSymbolModel", config.bigSymbolModel);
    config.modeConfig = std::clamp<std::int32_t>(j.value("modeConfig", std::int32_t{1}), 0, 3);
    config.mode = std::clamp<std::int32_t>(j.value("mode", std::int32_t{0}), 0, 1);
    // The key must hold an array; flags are only ever set here, so a
    // second read can't switch a country off.
    for (const auto& code : j["plateTemplates"].get_ref<const nlohmann::json::array_t&>()) {
        const std::string text = code.get<std::string>();
        for (std::size_t i = 0; i < plateTemplateCodes.size(); ++i)
            if (text == plateTemplateCodes[i]) config.templates[i] = true;
    }
}

bool saveRecogGlobal(const std::string& configDirectory, const RecognitionSrvConfig& config) {
    auto readsBack = [](nlohmann::json& j) {
        RecognitionSrvConfig scratch;
        takeRecogGlobal(j, scratch);
    };
    return writeJsonConfigFile(recognitionConfigMutexName, configFilePath(configDirectory, recognitionConfigFileName),
                               recognitionConfigText(config), SafetyCopy::none, readsBack);
}

bool loadRecogGlobal(const std::string& configDirectory, RecognitionSrvConfig& config) {
    ConfigReadRequest request;
    request.mutexName = recognitionConfigMutexName;
    request.path = configFilePath(configDirectory, recognitionConfigFileName);
    request.readerName = "loadRecogGlobal";
    request.writeDefaults = [&] { saveRecogGlobal(configDirectory, config); };
    const ReadOutcome outcome =
        readConfigFile(request, [&config](nlohmann::json& j) { takeRecogGlobal(j, config); });
    return outcome == ReadOutcome::done;
}

} // namespace vx::config
