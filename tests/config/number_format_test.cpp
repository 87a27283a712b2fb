#include "config/number_format.h"

#include <locale>

#include <gtest/gtest.h>

namespace vx::config {
namespace {

struct DecimalComma : std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};

// Six significant digits, and a user locale with a decimal comma must not
// reach the files.
TEST(NumberFormat, SixSignificantDigitsWhateverTheGlobalLocale) {
    const std::locale previous =
        std::locale::global(std::locale(std::locale::classic(), new DecimalComma));
    const std::string fraction = formatReal(0.25);
    const std::string large = formatReal(1234567.0);
    const std::string sum = formatReal(0.1 + 0.2);
    std::locale::global(previous);
    EXPECT_EQ(fraction, "0.25");
    EXPECT_EQ(large, "1.23457e+06");
    EXPECT_EQ(sum, "0.3");
}

} // namespace
} // namespace vx::config
