#pragma once
// The date-time record of the config files and its text form
// "YYYY-MM-DD hh:mm:ss".
#include <cstdint>
#include <string>

namespace vx::config {

// Laid out as the platform's SYSTEMTIME: eight unsigned 16-bit fields.
struct DateTime {
    std::uint16_t year = 0;
    std::uint16_t month = 0;
    std::uint16_t dayOfWeek = 0;
    std::uint16_t day = 0;
    std::uint16_t hour = 0;
    std::uint16_t minute = 0;
    std::uint16_t second = 0;
    std::uint16_t milliseconds = 0;
};

// Year, month, day, hour, minute, second zero-padded to 4, 2, 2, 2, 2, 2
// digits, as "2024-03-07 09:05:01". Day of week and milliseconds are not
// written. A wider value takes more digits.
std::string formatDateTime(const DateTime& value);

// Reads characters 0-3 (year), 5-6 (month), 8-9 (day), 11-12 (hour), 14-15
// (minute) and 17-18 (second); the characters between them are not looked at
// and anything after character 18 is ignored. Day of week and milliseconds
// become 0. Each field goes through std::stoi, so leading blanks and a sign
// are taken, conversion stops at the first non-digit ("1x" is 1) and the
// result is truncated to 16 bits ("-1" is 65535).
//
// Returns false, leaving `value` as it was, when `text` is shorter than 19
// characters. THROWS std::invalid_argument when a field begins with no digit
// at all (e.g. "2024-xx-..."); callers catch it where they catch the JSON
// parser's errors. On a throw `value` is also left as it was.
bool parseDateTime(const std::string& text, DateTime& value);

} // namespace vx::config
