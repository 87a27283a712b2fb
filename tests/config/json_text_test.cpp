#include "config/json_text.h"

#include <gtest/gtest.h>

namespace vx::config {
namespace {

TEST(JsonText, DoubleBackslashesTouchesNothingElse) {
    EXPECT_EQ(doubleBackslashes("C:\\video\\cam 1"), "C:\\\\video\\\\cam 1");
    EXPECT_EQ(doubleBackslashes("\\\\server"), "\\\\\\\\server");
    EXPECT_EQ(doubleBackslashes("a\"b\n\t\xC0"), "a\"b\n\t\xC0");
}

TEST(JsonText, EscapeTable) {
    const std::pair<std::string, std::string> cases[] = {
        {"\b\t\n\f\r", "\\b\\t\\n\\f\\r"},
        {"say \"hi\"\\", "say \\\"hi\\\"\\\\"},
        {std::string("\0", 1), "\\u0000"},
        {"\x0b\x1f", "\\u000b\\u001f"},
        {"\x1b[0m", "\\u001b[0m"},
        // Bytes of 128 and above are text (1251 or UTF-8), never \u escapes.
        {" /~\x7F\xC0\xFF\x80", " /~\x7F\xC0\xFF\x80"},
        {"Привет", "Привет"},
    };
    for (const auto& [text, escaped] : cases)
        EXPECT_EQ(escapeJsonText(text), escaped) << text;
}

TEST(JsonText, UnescapeTable) {
    const std::pair<const char*, const char*> cases[] = {
        {"\\b\\t\\n\\f\\r", "\b\t\n\f\r"},
        {"\\\"q\\\"", "\"q\""},
        {"a\\\\b", "a\\b"},
        {"\\\\n", "\\n"},   // a decoded pair is not read again
        // \u and the four characters after it go as they stand, undecoded.
        {"x\\u00e9y", "x\\u00e9y"},
        {"\\u\\n\\t", "\\u\\n\\t"},
        {"\\uABCD\\n", "\\uABCD\n"},
        {"\\u12", "\\u12"},
        {"\\u", "\\u"},
        // A lone or unknown backslash stays; what follows it is read afresh.
        {"end\\", "end\\"},
        {"\\x\\q\\/", "\\x\\q\\/"},
        {"\\x\\n", "\\x\n"},
    };
    for (const auto& [text, unescaped] : cases)
        EXPECT_EQ(unescapeJsonText(text), unescaped) << text;
}

} // namespace
} // namespace vx::config
