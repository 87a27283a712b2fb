// The form toolkit: how a field reads the operator's text (which texts
// refuse which characters, and the order of the checks, are looked at with
// each form, whose fields decide it).
#include <gtest/gtest.h>

#include <optional>

#include "dialogs/form_fields.h"
#include "dialogs/plate_case.h"
#include "form_test.h"

using namespace vx;
using namespace vx::dialogs;
using vx::dialogs::test::cp;

// A number is its text's leading number; without one the value stays.
TEST(FormFields, NumbersAreTheirTextsLeadingNumber)
{
    IntegerField integer;
    integer.minimum = 1;   // not applied by the read
    integer.maximum = 65535;
    const std::pair<const char*, std::optional<std::int64_t>> integers[] = {
        {" 8080 ", 8080}, {"25 fps", 25}, {"500 Mb", 500}, {"12a", 12}, {"+7", 7}, {"-3", -3}, {"1.9", 1},
        {"", {}}, {" ", {}}, {"a12", {}}, {"Mb", {}}, {"-", {}}, {"+", {}}, {"99999999999999999999", {}},
    };
    for (const auto& [text, expected] : integers) {
        std::int64_t value = 42;
        integer.type(text);
        EXPECT_EQ(integer.read(value), expected.has_value()) << text;
        EXPECT_EQ(value, expected.value_or(42)) << text;
    }

    RealField real;
    const std::pair<const char*, std::optional<double>> reals[] = {
        {"0,75", 0.75}, {"0.5x", 0.5}, {" 25 fps", 25}, {",5", 0.5}, {"-0,25", -0.25}, {"1e2", 100}, {"3,5,1", 3.5},
        {"", {}}, {"fps", {}}, {".", {}}, {"-", {}}, {"inf", {}}, {"nan", {}}, {"1e999", {}},
    };
    for (const auto& [text, expected] : reals) {
        double value = 42;
        real.type(text);
        EXPECT_EQ(real.read(value), expected.has_value()) << text;
        EXPECT_DOUBLE_EQ(value, expected.value_or(value)) << text;
    }
}

TEST(PlateCase, LatinAndCyrillicLettersOnlyAreRaised)
{
    EXPECT_EQ(upperCasePlate(cp("ёяЁ x")), cp("ЁЯЁ X"));
    // Other bytes stay: digits, blanks, masks, Latin capitals, the other
    // letters of the code page.
    EXPECT_EQ(upperCasePlate("*[A]|9 "), "*[A]|9 ");
    EXPECT_EQ(upperCasePlate(cp("іїє")), cp("іїє"));
}
