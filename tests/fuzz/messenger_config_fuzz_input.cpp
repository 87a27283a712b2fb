// The messenger service's file vx_mess_config.json: any bytes as the file.
// What it reads is saved and read again, and must keep every value, the
// enciphered tokens included.
#include <string>

#include "config/messenger_config.h"
#include "config/token_cipher.h"
#include "fuzz_registry.h"
#include "fuzz_support.h"

namespace vx::fuzz {
namespace {

using namespace vx::config;

constexpr std::int32_t controlPort = 1235;

void readMessengerConfigInput(const std::uint8_t* data, std::size_t size)
{
    SilencedStderr silenced;
    const std::string dir = fuzzFolder().string();
    const std::string input = inputText(data, size);
    putFile(fuzzFolder() / messengersConfigFileName, input);
    MessengersConfig config;
    loadMessengers(dir, config, controlPort);
    check(saveMessengers(dir, config), "a config that read won't save");
    MessengersConfig again;
    loadMessengers(dir, again, controlPort);
    check(messengersConfigText(again) == messengersConfigText(config), "a saved config changed a value");
    check(decipherToken(encipherToken(input)) == input, "a token doesn't come back from its cipher");
    decipherToken(input);
    removeKeptCopies(fuzzFolder());
}

const FuzzRegistration registered{
    "messenger_config", readMessengerConfigInput,
    {"\"port\"", "\"on\"", "\"channels\"", "\"name\"", "\"channelID\"", "\"typeMessenger\"", "\"token\"", "\"chatID\"", "\"delaySame\"", "\"delaySameMS\"", "\"delayAny\"", "\"delayAnyMS\"", "\"image\"", "\"server\"", "\"sender\"", "\"receiver\"", "\"00112233445566778899aabbccddeeff\""}};

} // namespace
} // namespace vx::fuzz
