#pragma once
// The catalogue of ready-made HTTP requests in receiversamples.json. The
// manager only reads it; the built-in "Custom" always stands first.
#include <functional>
#include <string>
#include <vector>

#include "config/receiver_sample.h"

namespace vx::config {

inline constexpr const char* receiverSamplesFileName = "receiversamples.json";

// Appends "Custom" to `samples`, then the file's templates in file order
// (the table isn't emptied first: it is filled once, at start-up). When the
// file opens, `clearWhiteLists` is called before it is parsed: that
// clearing belongs to this step and has no effect at start-up, where the
// white lists are loaded afterwards. Errors go to standard error; the
// entries read before one stay.
void loadSignals(const std::string& configDirectory, std::vector<ReceiverSample>& samples,
                 const std::function<void()>& clearWhiteLists = nullptr);

} // namespace vx::config
