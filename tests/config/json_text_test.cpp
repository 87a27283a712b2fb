#include "config/json_text.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace vx::config {
namespace {

TEST(JsonText, DoubleBackslashesTouchesNothingElse) {
    EXPECT_EQ(doubleBackslashes("C:\\video\\cam 1"), "C:\\\\video\\\\cam 1");
    EXPECT_EQ(doubleBackslashes("\\\\server"), "\\\\\\\\server");
    EXPECT_EQ(doubleBackslashes("a\"b\n\t\xC0"), "a\"b\n\t\xC0");
    EXPECT_EQ(doubleBackslashes(""), "");
}

TEST(JsonText, EscapeTable) {
    EXPECT_EQ(escapeJsonText("\b\t\n\f\r"), "\\b\\t\\n\\f\\r");
    EXPECT_EQ(escapeJsonText("say \"hi\"\\"), "say \\\"hi\\\"\\\\");
    EXPECT_EQ(escapeJsonText(std::string("\0", 1)), "\\u0000");
    EXPECT_EQ(escapeJsonText("\x01"), "\\u0001");
    EXPECT_EQ(escapeJsonText("\x0b"), "\\u000b");
    EXPECT_EQ(escapeJsonText("\x1f"), "\\u001f");
    EXPECT_EQ(escapeJsonText("\x1b[0m"), "\\u001b[0m");
}

TEST(JsonText, EscapeLetsOtherBytesPass) {
    EXPECT_EQ(escapeJsonText(" /~\x7F"), " /~\x7F");
    // Bytes of 128 and above are text (1251 or UTF-8), never \u escapes.
    EXPECT_EQ(escapeJsonText("\xC0\xFF\x80"), "\xC0\xFF\x80");
    EXPECT_EQ(escapeJsonText("Привет"), "Привет");
}

TEST(JsonText, UnescapeTable) {
    EXPECT_EQ(unescapeJsonText("\\b\\t\\n\\f\\r"), "\b\t\n\f\r");
    EXPECT_EQ(unescapeJsonText("\\\"q\\\""), "\"q\"");
    EXPECT_EQ(unescapeJsonText("a\\\\b"), "a\\b");
    // A decoded pair is not read again: \\n is a backslash and an n.
    EXPECT_EQ(unescapeJsonText("\\\\n"), "\\n");
}

TEST(JsonText, UnicodeEscapeIsCopiedUndecoded) {
    EXPECT_EQ(unescapeJsonText("\\u0001"), "\\u0001");
    EXPECT_EQ(unescapeJsonText("x\\u00e9y"), "x\\u00e9y");
    // Six characters go as they stand, whatever they are.
    EXPECT_EQ(unescapeJsonText("\\u\\n\\t"), "\\u\\n\\t");
    EXPECT_EQ(unescapeJsonText("\\uABCD\\n"), "\\uABCD\n");
}

TEST(JsonText, UnicodeEscapeWithFewerThanFourCharactersStays) {
    EXPECT_EQ(unescapeJsonText("\\u"), "\\u");
    EXPECT_EQ(unescapeJsonText("\\u12"), "\\u12");
    EXPECT_EQ(unescapeJsonText("\\u123"), "\\u123");
    EXPECT_EQ(unescapeJsonText("\\u1234"), "\\u1234");
}

TEST(JsonText, LoneBackslashStays) {
    EXPECT_EQ(unescapeJsonText("\\"), "\\");
    EXPECT_EQ(unescapeJsonText("end\\"), "end\\");
    EXPECT_EQ(unescapeJsonText("\\x\\q"), "\\x\\q");
    EXPECT_EQ(unescapeJsonText("\\/"), "\\/");
    // The character after a kept backslash is read afresh.
    EXPECT_EQ(unescapeJsonText("\\x\\n"), "\\x\n");
}

TEST(JsonText, BodyThroughAFileAndTheParser) {
    // A writer puts escapeJsonText(body) in quotes; the parser undoes that
    // level, and the reader then applies unescapeJsonText once more.
    auto throughFile = [](const std::string& body) {
        const std::string file = "{\"body\":\"" + escapeJsonText(body) + "\"}";
        return unescapeJsonText(nlohmann::json::parse(file)["body"].get<std::string>());
    };
    EXPECT_EQ(throughFile("{\"plate\":\"A123\"}\r\n\t\x01"), "{\"plate\":\"A123\"}\r\n\t\x01");
    // A backslash sequence typed into the body is undone by the second pass.
    EXPECT_EQ(throughFile("a\\nb"), "a\nb");
    EXPECT_EQ(throughFile("\\u0041"), "\\u0041");
}

} // namespace
} // namespace vx::config
