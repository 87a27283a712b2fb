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

TEST(DateTimeRecord, HasTheLayoutOfTheSystemRecord) {
    EXPECT_EQ(sizeof(DateTime), 16u);
}

TEST(DateTimeFormat, ZeroPadsEachField) {
    DateTime value;
    value.year = 2024;
    value.month = 3;
    value.day = 7;
    value.hour = 9;
    value.minute = 5;
    value.second = 1;
    value.dayOfWeek = 4;
    value.milliseconds = 250;
    EXPECT_EQ(formatDateTime(value), "2024-03-07 09:05:01");
    EXPECT_EQ(formatDateTime(DateTime{}), "0000-00-00 00:00:00");
    value.year = 65535;
    EXPECT_EQ(formatDateTime(value), "65535-03-07 09:05:01");
}

TEST(DateTimeParse, ReadsAFormattedText) {
    DateTime value = sample();
    ASSERT_TRUE(parseDateTime("2024-03-07 09:05:01", value));
    EXPECT_EQ(value.year, 2024);
    EXPECT_EQ(value.month, 3);
    EXPECT_EQ(value.day, 7);
    EXPECT_EQ(value.hour, 9);
    EXPECT_EQ(value.minute, 5);
    EXPECT_EQ(value.second, 1);
    EXPECT_EQ(value.dayOfWeek, 0);
    EXPECT_EQ(value.milliseconds, 0);
    EXPECT_EQ(formatDateTime(value), "2024-03-07 09:05:01");
}

TEST(DateTimeParse, ShortTextIsRefusedAndTheRecordKept) {
    DateTime value = sample();
    EXPECT_FALSE(parseDateTime("2024-03-07", value));
    EXPECT_TRUE(same(value, sample()));
    EXPECT_FALSE(parseDateTime("2024-03-07 09:05:0", value));   // 18 characters
    EXPECT_TRUE(same(value, sample()));
    EXPECT_FALSE(parseDateTime("", value));
    EXPECT_TRUE(same(value, sample()));
}

TEST(DateTimeParse, SeparatorsAreNotLookedAt) {
    DateTime value;
    EXPECT_TRUE(parseDateTime("2024/03/07T09.05.01", value));
    EXPECT_EQ(formatDateTime(value), "2024-03-07 09:05:01");
    // The time pickers' form: a fixed date put in front of a time.
    EXPECT_TRUE(parseDateTime("2000-01-01T18:30:00", value));
    EXPECT_EQ(value.hour, 18);
    EXPECT_EQ(value.minute, 30);
}

TEST(DateTimeParse, TrailingTextIsIgnored) {
    DateTime value;
    EXPECT_TRUE(parseDateTime("2024-03-07 09:05:01.123+03:00", value));
    EXPECT_EQ(formatDateTime(value), "2024-03-07 09:05:01");
    EXPECT_EQ(value.milliseconds, 0);
}

TEST(DateTimeParse, FieldStopsAtTheFirstNonDigit) {
    DateTime value;
    EXPECT_TRUE(parseDateTime("2024-1x-07 09:05:01", value));
    EXPECT_EQ(value.month, 1);
    EXPECT_EQ(value.day, 7);
    EXPECT_TRUE(parseDateTime("24  -03-07 09:05:01", value));
    EXPECT_EQ(value.year, 24);
}

TEST(DateTimeParse, FieldWithoutADigitThrowsAndKeepsTheRecord) {
    DateTime value = sample();
    EXPECT_THROW(parseDateTime("2024-xx-07 09:05:01", value), std::invalid_argument);
    EXPECT_TRUE(same(value, sample()));
    EXPECT_THROW(parseDateTime("2024-03-07 09:05:  ", value), std::invalid_argument);
    EXPECT_THROW(parseDateTime("                   ", value), std::invalid_argument);
    EXPECT_TRUE(same(value, sample()));
}

TEST(DateTimeParse, DecimalConversionTakesSignsAndBlanks) {
    DateTime value;
    EXPECT_TRUE(parseDateTime(" 999- 3-+7 -1:05:01", value));
    EXPECT_EQ(value.year, 999);
    EXPECT_EQ(value.month, 3);
    EXPECT_EQ(value.day, 7);
    EXPECT_EQ(value.hour, 65535);   // -1 cut to 16 bits
}

} // namespace
} // namespace vx::config
