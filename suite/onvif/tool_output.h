#pragma once
// The one JSON text the tool prints, and the guard that prints it once:
// the watchdog that ends a run at its time limit and the run itself may
// both want to print.
#include <optional>
#include <string>
#include <vector>

#include "discovery_messages.h"

namespace onvif {

std::string scanJson(const std::vector<FoundCamera>& cameras);
// {"rtsp":"..."}, or {} when there is no link.
std::string rtspJson(const std::optional<std::string>& link);

// Writes the text and a newline to standard output and flushes, the first
// time only; false when something was printed before.
bool printOnce(const std::string& text);

} // namespace onvif
