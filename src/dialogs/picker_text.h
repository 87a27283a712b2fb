#pragma once
// The texts the date and time pickers are stored as: formatDateTime and its
// two shorter forms, and the joining of a date picker with a time picker.
#include <functional>
#include <string>

#include "config/date_time.h"

namespace vx::dialogs {

// "2024-03-01 08:05:00", "2024-03-01" and "08:05:00".
std::string dateTimeText(const config::DateTime& value);
std::string dateText(const config::DateTime& value);
std::string timeText(const config::DateTime& value);

// The date of `date` with the time of day of `time`.
config::DateTime joinDateTime(const config::DateTime& date, const config::DateTime& time);

// The current local moment, for the pickers; forms take it injected.
using Clock = std::function<config::DateTime()>;
config::DateTime localNow();

} // namespace vx::dialogs
