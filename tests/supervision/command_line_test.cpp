#include <gtest/gtest.h>

#include "platform/command_line.h"

namespace vx::platform {
namespace {

struct Case {
    const char* line;
    std::vector<std::string> arguments;
};

TEST(SplitCommandLine, FollowsTheArgvRules)
{
    const std::vector<Case> cases = {
        {"", {}},
        {"   \t ", {}},
        {"vxInference \"/a b/configs/vx_recog_config_srv.json\" \"/a b/logs/vxInferenceLog.txt\"",
         {"vxInference", "/a b/configs/vx_recog_config_srv.json", "/a b/logs/vxInferenceLog.txt"}},
        // The program name takes no escapes; a quoted one runs to the next quote.
        {"\"C:\\Program Files\\vx\\vxMes.exe\" x", {"C:\\Program Files\\vx\\vxMes.exe", "x"}},
        {"a\\\"b c", {"a\\\"b", "c"}},
        {"\"prog\"rest arg", {"prog", "rest", "arg"}},
        // Blanks and tabs separate; runs of them count once; trailing ones add nothing.
        {"p  a\t\tb  ", {"p", "a", "b"}},
        // Empty arguments.
        {"p \"\" \"\"", {"p", "", ""}},
        // Backslashes before a quote: 2n give n and a quote that toggles,
        // 2n+1 give n and a literal quote; elsewhere they are plain.
        {"p a\\\\b c:\\dir\\", {"p", "a\\\\b", "c:\\dir\\"}},
        {"p \\\"a\\\"", {"p", "\"a\""}},
        {"p \\\\\"a b\"", {"p", "\\a b"}},
        {"p \\\\\\\"a", {"p", "\\\"a"}},
        {"p \"c:\\dir\\\\\" next", {"p", "c:\\dir\\", "next"}},
        {"p \"c:\\dir\\\" next\"", {"p", "c:\\dir\" next"}},
        // Quotes in the middle and doubled quotes.
        {"p ab\"c d\"ef", {"p", "abc def"}},
        {"p \"a\"\"b\"", {"p", "a\"b"}},
        {"p \"a\"\"\"b", {"p", "a\"b"}},
        {"p \"\"\"\"", {"p", "\""}},
        {"p \"unterminated arg", {"p", "unterminated arg"}},
        // Cyrillic UTF-8 bytes pass through untouched.
        {"p \"/путь с пробелом/файл\"", {"p", "/путь с пробелом/файл"}},
    };
    for (const Case& c : cases)
        EXPECT_EQ(splitCommandLine(c.line), c.arguments) << c.line;
}

} // namespace
} // namespace vx::platform
