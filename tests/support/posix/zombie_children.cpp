#include "support/posix/zombie_children.h"

#include <unistd.h>

#include <filesystem>
#include <sstream>
#include <string>

#include "support/captured_stderr.h"

namespace vx::test {

int zombieChildren()
{
    int count = 0;
    const std::string self = std::to_string(::getpid());
    std::error_code ec;
    for (const auto& folder : std::filesystem::directory_iterator("/proc", ec)) {
        const std::string name = folder.path().filename().string();
        if (name.empty() || name.find_first_not_of("0123456789") != std::string::npos)
            continue;
        const std::string stat = readFileBytes(folder.path() / "stat");
        const auto close = stat.rfind(')');
        if (close == std::string::npos || close + 2 >= stat.size())
            continue;
        std::istringstream rest(stat.substr(close + 2));
        std::string state, parent;
        rest >> state >> parent;
        if (state == "Z" && parent == self)
            ++count;
    }
    return count;
}

} // namespace vx::test
