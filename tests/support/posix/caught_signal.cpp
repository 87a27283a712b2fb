#include "support/posix/caught_signal.h"

#include <fstream>
#include <string>

#include "support/installation.h"

namespace vx::test {

bool waitUntilCaught(long pid, int signal, int timeoutMs)
{
    return waitFor(
        [pid, signal] {
            std::ifstream status("/proc/" + std::to_string(pid) + "/status");
            for (std::string line; std::getline(status, line);)
                if (line.rfind("SigCgt:", 0) == 0)
                    return ((std::stoull(line.substr(7), nullptr, 16) >> (signal - 1)) & 1u) != 0;
            return false;
        },
        timeoutMs);
}

} // namespace vx::test
