#include "platform/command_line.h"

namespace vx::platform {

namespace {
bool isBlank(char c)
{
    return c == ' ' || c == '\t';
}
} // namespace

std::vector<std::string> splitCommandLine(const std::string& commandLine)
{
    std::vector<std::string> arguments;
    std::size_t i = 0;
    const std::size_t n = commandLine.size();
    while (i < n && isBlank(commandLine[i]))
        ++i;
    if (i == n)
        return arguments;

    // The program name: no escapes at all.
    std::string program;
    if (commandLine[i] == '"') {
        ++i;
        while (i < n && commandLine[i] != '"')
            program += commandLine[i++];
        if (i < n)
            ++i;   // the closing quote
    } else {
        while (i < n && !isBlank(commandLine[i]))
            program += commandLine[i++];
    }
    arguments.push_back(program);
    while (i < n && isBlank(commandLine[i]))
        ++i;
    if (i == n)
        return arguments;

    std::string current;
    int quotes = 0;        // 1 inside a quoted part
    int backslashes = 0;   // run of backslashes just copied into `current`
    while (i < n) {
        const char c = commandLine[i];
        if (isBlank(c) && quotes == 0) {
            arguments.push_back(current);
            current.clear();
            backslashes = 0;
            while (i < n && isBlank(commandLine[i]))
                ++i;
            if (i == n)
                return arguments;
            continue;
        }
        if (c == '\\') {
            current += c;
            ++backslashes;
            ++i;
            continue;
        }
        if (c == '"') {
            if (backslashes % 2 == 0) {
                current.resize(current.size() - backslashes / 2);
                ++quotes;
            } else {
                current.resize(current.size() - backslashes / 2 - 1);
                current += '"';
            }
            ++i;
            backslashes = 0;
            // A run of further quotes: every third one is a literal quote.
            while (i < n && commandLine[i] == '"') {
                if (++quotes == 3) {
                    current += '"';
                    quotes = 0;
                }
                ++i;
            }
            if (quotes == 2)
                quotes = 0;
            continue;
        }
        current += c;
        backslashes = 0;
        ++i;
    }
    arguments.push_back(current);
    return arguments;
}

} // namespace vx::platform
