#pragma once
// What the manager keeps to talk to one stream process: the handle of the
// stream's window (0 until found), a text field for the command being sent,
// and the send timeout.
#include <string>

#include "platform/window_endpoint.h"

namespace vx::core {

struct StreamChannel {
    platform::WindowHandle window = 0;
    std::string text;
    int timeoutMs = 200;
};

} // namespace vx::core
