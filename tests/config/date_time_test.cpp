#include "config/date_time.h"

#include <stdexcept>

#include <gtest/gtest.h>

namespace vx::config {
namespace {

DateTime sample() {
    DateTime value;
    value.year = 1999;
    value.month = 12;
    value.dayOfWeek = 5;
    value.day = 31;
    value.hour = 23;
    value.minute = 59;
    value.second = 58;
    value.milliseconds = 777;
    return value;
}

bool same(const DateTime& a, const DateTime& b) {
    return a.year == b.year && a.month == b.month && a.dayOfWeek == b.dayOfWeek &&
           a.day == b.day && a.hour == b.hour && a.minute == b.minute &&
           a.second == b.second && a.milliseconds == b.milliseconds;
}

TEST(DateTimeFormat, ZeroPadsEachField) {
    DateTime value = sample();
    value.year = 2024;
    value.month = 3;
    value.day = 7;
    value.hour = 9;
    value.minute = 5;
    value.second = 1;
    EXPECT_EQ(formatDateTime(value), "2024-03-07 09:05:01");
    EXPECT_EQ(formatDateTime(DateTime{}), "0000-00-00 00:00:00");
    value.year = 65535;
    EXPECT_EQ(formatDateTime(value), "65535-03-07 09:05:01");
}

// Fixed positions, the separators and what follows never looked at; day of
// week and milliseconds come out zero.
TEST(DateTimeParse, ReadsTheFieldsAtTheirPlaces) {
    const std::pair<const char*, const char*> cases[] = {
        {"2024-03-07 09:05:01", "2024-03-07 09:05:01"},
        {"2024/03/07T09.05.01", "2024-03-07 09:05:01"},
        {"2000-01-01T18:30:00", "2000-01-01 18:30:00"},   // the time pickers' form
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
    for (const char* text : {"2024-03-07", "2024-03-07 09:05:0", ""}) {
        DateTime value = sample();
        EXPECT_FALSE(parseDateTime(text, value)) << text;
        EXPECT_TRUE(same(value, sample())) << text;
    }
    for (const char* text : {"2024-xx-07 09:05:01", "2024-03-07 09:05:  ", "                   "}) {
        DateTime value = sample();
        EXPECT_THROW(parseDateTime(text, value), std::invalid_argument) << text;
        EXPECT_TRUE(same(value, sample())) << text;
    }
}

} // namespace
} // namespace vx::config
