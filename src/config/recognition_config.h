#pragma once
// The recognition service's settings, kept in vx_recog_config_srv.json. The
// manager writes the file and the service reads it.
#include <array>
#include <cstdint>
#include <string>

namespace vx::config {

inline constexpr const char* recognitionConfigFileName = "vx_recog_config_srv.json";

// The countries whose plate templates apply, in the order of the flags and
// of the file's plateTemplates array.
inline constexpr std::array<const char*, 10> plateTemplateCodes = {
    "ru", "az", "am", "by", "kz", "kg", "tj", "uz", "abh", "rso"};

struct RecognitionSrvConfig {
    std::array<bool, 10> templates{};   // one flag per plateTemplateCodes entry
    bool bigSymbolModel = false;
    std::int32_t port = 1234;
    std::int32_t minSymbolsPlate = 6;
    std::int32_t maxSymbolsPlate = 15;
    std::int32_t minPlateHeight = 12;
    std::int32_t minPlateWidth = 60;
    std::int32_t modeConfig = 1;        // model size, 0 to 3
    std::int32_t mode = 0;              // 1 shows the service's debug console
    std::int32_t gpuObjects = 1;
    bool turn = true;
    bool gpu = false;
    float detectConfThresh = 0.25f;
    float detectConfPerson = 0.25f;
    float detectConfVehicle = 0.25f;
};

// The service's model file for a model size; sizes outside 0 to 3 take the
// nearest end.
std::string modelConfigName(std::int32_t modeConfig);

// The file's text exactly as saveRecogGlobal writes it.
std::string recognitionConfigText(const RecognitionSrvConfig& config);

// Reads `configDirectory`/vx_recog_config_srv.json into `config`, writing the
// defaults first when the file won't open. False when the file can't be had
// or can't be read; the fields taken before an error keep their new values.
bool loadRecogGlobal(const std::string& configDirectory, RecognitionSrvConfig& config);
bool saveRecogGlobal(const std::string& configDirectory, const RecognitionSrvConfig& config);

} // namespace vx::config
