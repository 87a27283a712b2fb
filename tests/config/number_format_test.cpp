#include "config/number_format.h"

#include <locale>

#include <gtest/gtest.h>

namespace vx::config {
namespace {

TEST(NumberFormat, StreamDefaultSixSignificantDigits) {
    EXPECT_EQ(formatReal(0.25), "0.25");
    EXPECT_EQ(formatReal(1.0), "1");
    EXPECT_EQ(formatReal(0.05), "0.05");
    EXPECT_EQ(formatReal(0.0), "0");
    EXPECT_EQ(formatReal(-2.5), "-2.5");
    EXPECT_EQ(formatReal(0.1 + 0.2), "0.3");
    EXPECT_EQ(formatReal(123456.0), "123456");
    EXPECT_EQ(formatReal(1234567.0), "1.23457e+06");
    EXPECT_EQ(formatReal(0.0001), "0.0001");
    EXPECT_EQ(formatReal(0.00001), "1e-05");
    EXPECT_EQ(formatReal(3.14159265), "3.14159");
}

struct DecimalComma : std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};

TEST(NumberFormat, IgnoresTheGlobalLocale) {
    // A user locale with a decimal comma must not reach the files.
    const std::locale previous =
        std::locale::global(std::locale(std::locale::classic(), new DecimalComma));
    const std::string fraction = formatReal(0.25);
    const std::string large = formatReal(123456.0);
    std::locale::global(previous);
    EXPECT_EQ(fraction, "0.25");
    EXPECT_EQ(large, "123456");
}

} // namespace
} // namespace vx::config
