#pragma once
// The messenger service's settings, kept in vx_mess_config.json: its port,
// its on switch and exactly ten channel slots. A channel's token is held in
// clear in memory and enciphered in the file.
#include <array>
#include <cstdint>
#include <string>

namespace vx::config {

inline constexpr const char* messengersConfigFileName = "vx_mess_config.json";

struct MessengerChannel {
    std::string name;
    std::int32_t channelID = 0;       // the slot's number from 1, set by the form
    bool on = false;
    std::int32_t typeMessenger = 0;   // 0 Telegram, 1 MAX, 2 Email
    std::string token;                // bot token or mail password
    std::string chatID;
    bool delaySame = true;
    std::int32_t delaySameMS = 1000;
    bool delayAny = false;
    std::int32_t delayAnyMS = 1000;
    std::int32_t image = 0;
    std::string server;
    std::int32_t port = 0;            // mail server port
    std::string sender;
    std::string receiver;
};

struct MessengersConfig {
    std::int32_t port = 1236;
    bool on = false;
    std::array<MessengerChannel, 10> channels{};
};

// The file's text exactly as saveMessengers writes it.
std::string messengersConfigText(const MessengersConfig& config);

// Reads `configDirectory`/vx_mess_config.json into `config`, writing the
// defaults first when the file won't open. `controlPort` is the control
// service's port: an old file without "port" or "on" takes it as their
// value. Failures go to standard error only.
void loadMessengers(const std::string& configDirectory, MessengersConfig& config, std::int32_t controlPort);
bool saveMessengers(const std::string& configDirectory, const MessengersConfig& config);

} // namespace vx::config
