#include "platform/process_command_line.h"

#include <fstream>
#include <iterator>

namespace vx::platform {

std::string readProcessCommandLine(long pid)
{
    if (pid <= 0)
        return {};
    std::ifstream in("/proc/" + std::to_string(pid) + "/cmdline", std::ios::binary);
    if (!in)
        return {};
    const std::string raw((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    std::vector<std::string> arguments;
    std::size_t start = 0;
    while (start < raw.size()) {
        std::size_t end = raw.find('\0', start);
        if (end == std::string::npos)
            end = raw.size();
        arguments.push_back(raw.substr(start, end - start));
        start = end + 1;
    }
    return joinCommandLine(arguments);
}

} // namespace vx::platform
