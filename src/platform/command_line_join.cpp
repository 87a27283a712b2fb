// Joining an argument list by the quoting rules of command_line.h; the same
// on every platform.
#include "platform/process_command_line.h"

namespace vx::platform {
namespace {

std::string quoteArgument(const std::string& argument)
{
    if (!argument.empty() && argument.find_first_of(" \t\"") == std::string::npos)
        return argument;
    std::string out = "\"";
    std::size_t backslashes = 0;
    for (char c : argument) {
        if (c == '\\') {
            ++backslashes;
            continue;
        }
        if (c == '"') {
            out.append(backslashes * 2 + 1, '\\');
            out += '"';
        } else {
            out.append(backslashes, '\\');
            out += c;
        }
        backslashes = 0;
    }
    // Backslashes before the closing quote are doubled so they stay plain.
    out.append(backslashes * 2, '\\');
    out += '"';
    return out;
}

} // namespace

std::string joinCommandLine(const std::vector<std::string>& arguments)
{
    std::string line;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        if (i == 0) {
            const std::string& program = arguments[0];
            line += program.find_first_of(" \t") == std::string::npos && !program.empty() ? program
                                                                                            : "\"" + program + "\"";
        } else {
            line += ' ';
            line += quoteArgument(arguments[i]);
        }
    }
    return line;
}

} // namespace vx::platform
