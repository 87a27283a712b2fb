// The form toolkit: fields as the operator drives them and the checks of
// an accept (which texts refuse which characters is looked at with each
// form, whose fields decide it).
#include <gtest/gtest.h>

#include "dialogs/form.h"
#include "dialogs/form_fields.h"
#include "dialogs/plate_case.h"
#include "white_list_fixture.h"

using namespace vx;
using namespace vx::dialogs;
using vx::dialogs::test::cp;

TEST(FormFields, TextIsCutAtItsLimitAndADisabledFieldTakesNoInput)
{
    TextField field;
    field.maxLength = 5;
    field.type("abcdefgh");
    EXPECT_EQ(field.text, "abcde");
    field.set("123456");
    EXPECT_EQ(field.text, "12345");
    field.enabled = false;
    field.type("x");
    EXPECT_EQ(field.text, "12345");

    int clicks = 0;
    CheckField check;
    check.onClick = [&] { ++clicks; };
    check.click();
    EXPECT_TRUE(check.checked);
    check.enabled = false;
    check.click();
    EXPECT_TRUE(check.checked);
    EXPECT_EQ(clicks, 1);

    ChoiceField choice;
    choice.count = 3;
    choice.choose(2);
    choice.choose(3);   // no such choice
    EXPECT_EQ(choice.chosen, 2);

    ListField list;
    list.items = {"a", "b"};
    list.select(5);
    EXPECT_EQ(list.selected, -1);
    list.select(1);
    EXPECT_EQ(list.selected, 1);
}

TEST(FormFields, NumbersAreTheirTextsLeadingNumber)
{
    IntegerField integer;
    integer.minimum = 1;
    integer.maximum = 65535;
    const std::pair<const char*, std::int64_t> integers[] = {
        {" 8080 ", 8080}, {"25 fps", 25}, {"500 Mb", 500}, {"12a", 12}, {"+7", 7}, {"-3", -3}, {"1.9", 1},
    };
    for (const auto& [text, expected] : integers) {
        std::int64_t value = 0;
        integer.type(text);
        EXPECT_TRUE(integer.read(value)) << text;
        EXPECT_EQ(value, expected) << text;
    }
    for (const char* bad : {"", " ", "a12", "Mb", "-", "+", "99999999999999999999"}) {
        std::int64_t value = 42;
        integer.type(bad);
        EXPECT_FALSE(integer.read(value)) << bad;
        EXPECT_EQ(value, 42) << bad;
    }
    integer.type("70000");
    EXPECT_FALSE(integer.inRange());
    integer.type("8080 port");
    EXPECT_TRUE(integer.inRange());

    RealField real;
    const std::pair<const char*, double> reals[] = {
        {"0,75", 0.75}, {"0.5x", 0.5}, {" 25 fps", 25}, {",5", 0.5}, {"-0,25", -0.25}, {"1e2", 100}, {"3,5,1", 3.5},
    };
    for (const auto& [text, expected] : reals) {
        double value = 0;
        real.type(text);
        EXPECT_TRUE(real.read(value)) << text;
        EXPECT_DOUBLE_EQ(value, expected) << text;
    }
    for (const char* bad : {"", "fps", ".", "-", "inf", "nan", "1e999"}) {
        double value = 42;
        real.type(bad);
        EXPECT_FALSE(real.read(value)) << bad;
    }
    real.set(0.333, 2);
    EXPECT_EQ(real.text, "0.33");
}

TEST(FormChecks, TheLastFailingTestGivesTheOneMessage)
{
    ScriptedMessages messages;
    FormChecks checks;
    checks.test(false, "first");
    checks.test(true, "passes");
    checks.test(false, "second");
    checks.test(true, "passes too");
    EXPECT_FALSE(checks.report(messages));
    ASSERT_EQ(messages.shown.size(), 1u);
    EXPECT_EQ(messages.shown[0].text, "second");
    EXPECT_EQ(messages.shown[0].title, cp("Сообщение"));
    EXPECT_EQ(messages.shown[0].icon, MessageIcon::error);

    FormChecks clean;
    clean.test(true, "x");
    EXPECT_TRUE(clean.report(messages));
    EXPECT_EQ(messages.shown.size(), 1u);
}

TEST(PlateCase, LatinAndCyrillicLettersOnlyAreRaised)
{
    EXPECT_EQ(upperCasePlate(cp("а123вс77 x")), cp("А123ВС77 X"));
    EXPECT_EQ(upperCasePlate(cp("ёяЁ")), cp("ЁЯЁ"));
    // Other bytes stay: digits, blanks, masks, Latin capitals, the other
    // letters of the code page.
    EXPECT_EQ(upperCasePlate("*[A]|9 "), "*[A]|9 ");
    EXPECT_EQ(upperCasePlate(cp("іїє")), cp("іїє"));
}
