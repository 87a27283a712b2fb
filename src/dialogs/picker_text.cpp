#include "dialogs/picker_text.h"

#include <ctime>

#include "maintenance/local_time.h"

namespace vx::dialogs {

std::string dateTimeText(const config::DateTime& value)
{
    return config::formatDateTime(value);
}

std::string dateText(const config::DateTime& value)
{
    const std::string full = config::formatDateTime(value);
    const auto blank = full.find(' ');
    return full.substr(0, blank);
}

std::string timeText(const config::DateTime& value)
{
    const std::string full = config::formatDateTime(value);
    const auto blank = full.find(' ');
    return blank == std::string::npos ? std::string() : full.substr(blank + 1);
}

config::DateTime joinDateTime(const config::DateTime& date, const config::DateTime& time)
{
    config::DateTime joined = date;
    joined.hour = time.hour;
    joined.minute = time.minute;
    joined.second = time.second;
    joined.milliseconds = 0;
    return joined;
}

config::DateTime localNow()
{
    const std::tm local = maintenance::localTimeOf(std::time(nullptr));
    config::DateTime now;
    now.year = static_cast<std::uint16_t>(local.tm_year + 1900);
    now.month = static_cast<std::uint16_t>(local.tm_mon + 1);
    now.dayOfWeek = static_cast<std::uint16_t>(local.tm_wday);
    now.day = static_cast<std::uint16_t>(local.tm_mday);
    now.hour = static_cast<std::uint16_t>(local.tm_hour);
    now.minute = static_cast<std::uint16_t>(local.tm_min);
    now.second = static_cast<std::uint16_t>(local.tm_sec);
    return now;
}

} // namespace vx::dialogs
