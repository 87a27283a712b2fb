// The registry of white lists vx_stream_config_whitelists.json on its own:
// any bytes as the file. What it reads is saved and read again, and must
// keep every list's name and file in their order.
#include <string>

#include "config/white_list.h"
#include "config/white_list_registry.h"
#include "fuzz_registry.h"
#include "fuzz_support.h"

namespace vx::fuzz {
namespace {

using namespace vx::config;

void readWhiteListRegistryInput(const std::uint8_t* data, std::size_t size)
{
    SilencedStderr silenced;
    const std::string dir = fuzzFolder().string();
    putFile(fuzzFolder() / whiteListsRegistryFile, inputText(data, size));
    WhiteListTable table;
    loadWhiteListsList(table, dir);
    check(saveWhiteListsList(table, dir), "a registry that read won't save");
    WhiteListTable again;
    loadWhiteListsList(again, dir);
    check(whiteListsRegistryText(again) == whiteListsRegistryText(table), "a saved registry changed a list");
    removeKeptCopies(fuzzFolder());
}

const FuzzRegistration registered{
    "white_list_registry", readWhiteListRegistryInput,
    {"\"whitelists\"", "\"lists\"", "\"file\"", "\"name\"", "\"list1.list.csv\"", "\"empty.list.csv\""}};

} // namespace
} // namespace vx::fuzz
