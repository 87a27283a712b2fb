#pragma once
// Calendar time broken down to local time, safe from any thread.
#include <ctime>
#include <string>

namespace vx::maintenance {

std::tm localTimeOf(std::time_t time);
// strftime of the local time, e.g. "%Y-%m-%d %H:%M:%S".
std::string formatLocalTime(std::time_t time, const char* format);

} // namespace vx::maintenance
