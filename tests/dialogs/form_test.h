#pragma once
// Shared by the dialog tests: texts in the dialogs' code page, moments for
// the pickers and the last message a form showed.
#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "config/date_time.h"
#include "config/text_codec.h"
#include "dialogs/messages.h"

namespace vx::dialogs::test {

inline std::string cp(const char* utf8) { return config::utf8ToCp1251(utf8); }

inline config::DateTime at(int year, int month, int day, int hour = 0, int minute = 0, int second = 0)
{
    config::DateTime t{};
    t.year = static_cast<std::uint16_t>(year);
    t.month = static_cast<std::uint16_t>(month);
    t.day = static_cast<std::uint16_t>(day);
    t.hour = static_cast<std::uint16_t>(hour);
    t.minute = static_cast<std::uint16_t>(minute);
    t.second = static_cast<std::uint16_t>(second);
    return t;
}

// The moment the pickers take for "now".
inline config::DateTime fixedNow() { return at(2025, 6, 14, 10, 20, 30); }

// The text of the last message shown, "" when none was.
inline std::string lastText(const ScriptedMessages& messages)
{
    return messages.shown.empty() ? std::string() : messages.shown.back().text;
}

// Accepts `form`: the one message shown, "" when it was accepted.
template <typename Form> std::string acceptMessage(Form& form, ScriptedMessages& messages)
{
    messages.shown.clear();
    const bool accepted = form.accept();
    EXPECT_EQ(accepted, messages.shown.empty());
    EXPECT_LE(messages.shown.size(), 1u);
    return lastText(messages);
}

} // namespace vx::dialogs::test
