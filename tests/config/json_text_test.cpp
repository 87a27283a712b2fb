#include "config/json_text.h"

#include <gtest/gtest.h>

namespace vx::config {
namespace {

// The camera golden file's signal body pins the common escapes both ways
// (quotes, backslashes, tab, CR LF); these are the rest.
TEST(JsonText, EscapeTable) {
    const std::pair<std::string, std::string> cases[] = {
        {"\b\t\n\f\r", "\\b\\t\\n\\f\\r"},
        {std::string("\0", 1), "\\u0000"},
        {"\x0b\x1f", "\\u000b\\u001f"},
        // Bytes of 128 and above are text (1251 or UTF-8), never \u escapes.
        {" /~\x7F\xC0\xFF\x80", " /~\x7F\xC0\xFF\x80"},
    };
    for (const auto& [text, escaped] : cases)
        EXPECT_EQ(escapeJsonText(text), escaped) << text;
}

TEST(JsonText, UnescapeTable) {
    const std::pair<const char*, const char*> cases[] = {
        {"\\b\\t\\n\\f\\r", "\b\t\n\f\r"},
        {"\\\\n", "\\n"},   // a decoded pair is not read again
        // \u and the four characters after it go as they stand, undecoded.
        {"x\\u00e9y", "x\\u00e9y"},
        {"\\uABCD\\n", "\\uABCD\n"},
        {"\\u12", "\\u12"},
        {"\\u", "\\u"},
        // A lone or unknown backslash stays; what follows it is read afresh.
        {"end\\", "end\\"},
        {"\\x\\n", "\\x\n"},
    };
    for (const auto& [text, unescaped] : cases)
        EXPECT_EQ(unescapeJsonText(text), unescaped) << text;
}

} // namespace
} // namespace vx::config
