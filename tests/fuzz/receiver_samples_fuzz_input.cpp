// The catalogue of ready-made requests receiversamples.json, which the
// manager only reads: any bytes as the file. "Custom" always stands first.
#include <string>
#include <vector>

#include "config/receiver_samples.h"
#include "fuzz_registry.h"
#include "fuzz_support.h"

namespace vx::fuzz {
namespace {

using namespace vx::config;

void readReceiverSamplesInput(const std::uint8_t* data, std::size_t size)
{
    SilencedStderr silenced;
    putFile(fuzzFolder() / receiverSamplesFileName, inputText(data, size));
    std::vector<ReceiverSample> samples;
    int cleared = 0;
    loadSignals(fuzzFolder().string(), samples, [&cleared] { ++cleared; });
    check(!samples.empty() && samples[0].name == "Custom", "the built-in sample isn't first");
    check(cleared == 1, "the file that opened didn't clear the white lists once");
}

const FuzzRegistration registered{
    "receiver_samples", readReceiverSamplesInput,
    {"\"templates\"", "\"name\"", "\"type\"", "\"URL\"", "\"body\"", "\"image\"", "\"smallImage\"", "\"plateImage\"", "\"carImage\"", "\"contentType\"", }};

} // namespace
} // namespace vx::fuzz
