#include "config/date_time.h"

#include <cstdio>

namespace vx::config {

std::string formatDateTime(const DateTime& value) {
    char buffer[48];
    std::snprintf(buffer, sizeof buffer, "%04u-%02u-%02u %02u:%02u:%02u",
                  unsigned{value.year}, unsigned{value.month}, unsigned{value.day},
                  unsigned{value.hour}, unsigned{value.minute}, unsigned{value.second});
    return buffer;
}

bool parseDateTime(const std::string& text, DateTime& value) {
    if (text.size() < 19) return false;
    auto field = [&text](std::size_t position, std::size_t length) {
        return static_cast<std::uint16_t>(std::stoi(text.substr(position, length)));
    };
    DateTime parsed;
    parsed.year = field(0, 4);
    parsed.month = field(5, 2);
    parsed.day = field(8, 2);
    parsed.hour = field(11, 2);
    parsed.minute = field(14, 2);
    parsed.second = field(17, 2);
    value = parsed;
    return true;
}

} // namespace vx::config
