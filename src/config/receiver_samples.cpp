#include "config/receiver_samples.h"

#include <fstream>

#include "config/config_file.h"
#include "config/json_text.h"
#include "config/text_codec.h"

namespace vx::config {

void loadSignals(const std::string& configDirectory, std::vector<ReceiverSample>& samples,
                 const std::function<void()>& clearWhiteLists) {
    samples.push_back(ReceiverSample{});
    const std::string path = configFilePath(configDirectory, receiverSamplesFileName);
    if (!std::ifstream(toNativePath(path)).is_open()) return;
    if (clearWhiteLists) clearWhiteLists();

    ConfigReadRequest request;
    request.path = path;   // no named lock: nothing but the manager reads this file
    request.readerName = "loadSignals";
    readConfigFile(request, [&samples](nlohmann::json& j) {
        for (const auto& e : j.value("templates", nlohmann::json::array())) {
            ReceiverSample sample;
            sample.name = utf8ToCp1251(e.value("name", std::string("Corrupted name")));
            sample.URL = utf8ToCp1251(e.value("URL", std::string()));
            // The parser has unescaped the body once already; it is unescaped again.
            sample.body = unescapeJsonText(utf8ToCp1251(e.value("body", std::string())));
            sample.type = e.value("type", std::int32_t{0});
            sample.image = e.value("image", false);
            sample.smallImage = e.value("smallImage", false);
            sample.plateImage = e.value("plateImage", false);
            sample.carImage = e.value("carImage", false);
            sample.contentType = e.value("contentType", std::int32_t{0});
            samples.push_back(sample);
        }
    });
}

} // namespace vx::config
