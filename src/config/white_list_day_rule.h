#pragma once
// The day rule of a nested list ("permitted_access_days") and its text form.
#include <array>
#include <cstdint>
#include <string>

#include "config/date_time.h"

namespace vx::config {

struct DayRule {
    std::int32_t kind = 0;          // allDays, weekDays or oneDate (white_list.h)
    std::array<bool, 7> days{};     // kind weekDays: the allowed days, 0 Monday .. 6 Sunday
    DateTime date{};                // kind oneDate: year, month and day
};

// "all_days" is all days. Otherwise a comma-separated list of day numbers,
// each token stripped of blanks and tabs at both ends and made only of the
// digits 0 to 6, is a week-day rule; one bad token abandons the list.
// Otherwise ten characters "YYYY-MM-DD" with year 1601..30827, month 1..12
// and day 1..31 are one date (the day isn't tested against the month).
// Anything else counts as all days.
DayRule parseDayRule(const std::string& text);

// The text of a week-day rule: the set days in ascending order, separated by
// commas without blanks, as "0,2,6".
std::string dayListText(const std::array<bool, 7>& days);

} // namespace vx::config
