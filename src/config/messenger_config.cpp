#include "config/messenger_config.h"

#include <algorithm>
#include <iostream>

#include "config/config_file.h"
#include "config/text_codec.h"
#include "config/token_cipher.h"

namespace vx::config {
namespace {

const char* word(bool value) { return value ? "true" : "false"; }

std::string textLine(const char* key, const std::string& cp1251) {
    return std::string("\t\t\"") + key + "\":\"" + cp1251ToUtf8(cp1251) + "\",\n";
}

std::string numberLine(const char* key, std::int32_t value, bool last = false) {
    return std::string("\t\t\"") + key + "\":" + std::to_string(value) + (last ? "\n" : ",\n");
}

std::string wordLine(const char* key, bool value) {
    return std::string("\t\t\"") + key + "\":" + word(value) + ",\n";
}

// The token as the file holds it: empty, or its deciphered UTF-8 taken back
// to 1251. A token of a length that isn't a multiple of 16 is dropped
// silently; one that doesn't decipher is reported.
std::string readToken(const std::string& stored) {
    if (stored.empty() || stored.size() % 16 != 0) return {};
    const std::string plain = decipherToken(stored);
    if (plain.empty()) {
        std::cerr << "[VX2S] loadMessengers cann't decode token" << std::endl;
        return {};
    }
    return utf8ToCp1251(plain);
}

} // namespace

std::string messengersConfigText(const MessengersConfig& config) {
    std::string t = "{\n";
    t += "\t\"name\":\"MessengersConfig\",\n";
    t += "\t\"version\":1,\n";
    t += "\t\"port\":" + std::to_string(config.port) + ",\n";
    t += std::string("\t\"on\":") + (config.on ? "1" : "0") + ",\n";   // a number, not a word
    t += "\t\"channels\":[\n";
    for (std::size_t i = 0; i < config.channels.size(); ++i) {
        const MessengerChannel& c = config.channels[i];
        t += "\t{\n";
        t += textLine("name", c.name);
        t += numberLine("channelID", c.channelID);
        t += wordLine("on", c.on);
        t += numberLine("typeMessenger", c.typeMessenger);
        t += std::string("\t\t\"token\":\"") + encipherToken(cp1251ToUtf8(c.token)) + "\",\n";
        t += textLine("chatID", c.chatID);
        t += wordLine("delaySame", c.delaySame);
        t += numberLine("delaySameMS", c.delaySameMS);
        t += wordLine("delayAny", c.delayAny);
        t += numberLine("delayAnyMS", c.delayAnyMS);
        t += textLine("server", c.server);
        t += textLine("sender", c.sender);
        t += textLine("receiver", c.receiver);
        t += numberLine("port", c.port);
        t += numberLine("image", c.image, true);
        t += i + 1 < config.channels.size() ? "\t},\n" : "\t}\n";
    }
    t += "\t]\n";
    t += "}";
    return t;
}

// The reader's key taking, shared with the writer's read-back check.
static void takeMessengers(nlohmann::json& j, MessengersConfig& config, std::int32_t controlPort) {
    config.port = j.value("port", controlPort);
    config.on = j.value("on", controlPort) != 0;
    nlohmann::json& channels = j["channels"];
    const std::size_t count = std::min<std::size_t>(channels.size(), config.channels.size());
    for (std::size_t i = 0; i < count; ++i) {
        nlohmann::json& e = channels[i];
        MessengerChannel& c = config.channels[i];
        c.name = utf8ToCp1251(e.value("name", std::string()));
        c.on = e.value("on", false);
        c.channelID = e.value("channelID", std::int32_t{0});
        c.typeMessenger = e.value("typeMessenger", std::int32_t{0});
        c.token.clear();
        c.token = readToken(e.value("token", std::string()));
        c.chatID = utf8ToCp1251(e.value("chatID", std::string()));
        c.delaySame = e.value("delaySame", false);
        c.delaySameMS = e.value("delaySameMS", std::int32_t{1000});
        c.delayAny = e.value("delayAny", false);
        c.delayAnyMS = e.value("delayAnyMS", std::int32_t{1000});
        c.image = e.value("image", std::int32_t{0});
        c.server = utf8ToCp1251(e.value("server", std::string()));
        c.sender = utf8ToCp1251(e.value("sender", std::string()));
        c.receiver = utf8ToCp1251(e.value("receiver", std::string()));
        c.port = e.value("port", std::int32_t{465});
    }
}

bool saveMessengers(const std::string& configDirectory, const MessengersConfig& config) {
    auto readsBack = [](nlohmann::json& j) {
        MessengersConfig scratch;
        takeMessengers(j, scratch, 0);
    };
    return writeJsonConfigFile(messengersConfigMutexName, configFilePath(configDirectory, messengersConfigFileName),
                               messengersConfigText(config), SafetyCopy::none, readsBack);
}

void loadMessengers(const std::string& configDirectory, MessengersConfig& config, std::int32_t controlPort) {
    ConfigReadRequest request;
    request.mutexName = messengersConfigMutexName;
    request.path = configFilePath(configDirectory, messengersConfigFileName);
    request.readerName = "loadMessengers";
    request.writeDefaults = [&] { saveMessengers(configDirectory, config); };
    readConfigFile(request, [&](nlohmann::json& j) { takeMessengers(j, config, controlPort); });
}

} // namespace vx::config
