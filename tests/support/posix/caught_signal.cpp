#include "support/posix/caught_signal.h"

#include <chrono>
#include <fstream>
#include <string>
#include <thread>

#include "support/time_scale.h"

namespace vx::test {

namespace {

bool catches(long pid, int signal)
{
    std::ifstream status("/proc/" + std::to_string(pid) + "/status");
    for (std::string line; std::getline(status, line);)
        if (line.rfind("SigCgt:", 0) == 0)
            return (std::stoull(line.substr(7), nullptr, 16) >> (signal - 1)) & 1u;
    return false;
}

} // namespace

bool waitUntilCaught(long pid, int signal, int timeoutMs)
{
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(scaledMs(timeoutMs));
    while (!catches(pid, signal)) {
        if (std::chrono::steady_clock::now() >= deadline)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    return true;
}

} // namespace vx::test
