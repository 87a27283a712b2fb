#include "config/date_time.h"

#include <stdexcept>

#include <gtest/gtest.h>

namespace vx::config {
namespace {

// year, month, day of week, day, hour, minute, second, milliseconds
DateTime sample() { return {1999, 12, 5, 31, 23, 59, 58, 777}; }

// Fixed positions, the separators and what follows never looked at; day of
// week and milliseconds come out zero.
TEST(DateTimeParse, ReadsTheFieldsAtTheirPlaces) {
    const std::pair<const char*, const char*> cases[] = {
        {"2024-03-07 09:05:01", "2024-03-07 09:05:01"},
        {"2024/03/07T09.05.01", "2024-03-07 09:05:01"},
        {"2024-03-07 09:05:01.123+03:00", "2024-03-07 09:05:01"},
        {"2024-1x-07 09:05:01", "2024-01-07 09:05:01"},   // a field ends at its first non-digit
    };
    for (const auto& [text, formatted] : cases) {
        SCOPED_TRACE(text);
        DateTime value = sample();
        ASSERT_TRUE(parseDateTime(text, value));
        EXPECT_EQ(formatDateTime(value), formatted);
        EXPECT_EQ(value.dayOfWeek, 0);
        EXPECT_EQ(value.milliseconds, 0);
    }
}

TEST(DateTimeParse, ShortTextIsRefusedAndAFieldWithoutADigitThrowsBothKeepingTheRecord) {
    const auto untouched = [](const DateTime& v) {
        return formatDateTime(v) == formatDateTime(sample()) && v.dayOfWeek == 5 && v.milliseconds == 777;
    };
    for (const char* text : {"2024-03-07", "2024-03-07 09:05:0", ""}) {
        DateTime value = sample();
        EXPECT_FALSE(parseDateTime(text, value)) << text;
        EXPECT_TRUE(untouched(value)) << text;
    }
    for (const char* text : {"2024-xx-07 09:05:01", "2024-03-07 09:05:  ", "                   "}) {
        DateTime value = sample();
        EXPECT_THROW(parseDateTime(text, value), std::invalid_argument) << text;
        EXPECT_TRUE(untouched(value)) << text;
    }
}

} // namespace
} // namespace vx::config
