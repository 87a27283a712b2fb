#pragma once
// What the process tools read of /proc: a whole file, and a process's CPU
// time in clock ticks.
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>

namespace vx::bench {

inline std::string readText(const std::filesystem::path& path)
{
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
}

// utime + stime in clock ticks of /proc/<pid>/stat, -1 when it is gone;
// `system` gets stime.
inline long long cpuTicks(long pid, long long* system = nullptr)
{
    const std::string stat = readText("/proc/" + std::to_string(pid) + "/stat");
    const auto close = stat.rfind(')');
    if (close == std::string::npos)
        return -1;
    std::istringstream in(stat.substr(close + 2));
    std::string field;
    long long utime = 0, stime = 0;
    for (int i = 3; i <= 15 && in >> field; ++i) {
        if (i == 14) utime = std::stoll(field);
        if (i == 15) stime = std::stoll(field);
    }
    if (system)
        *system = stime;
    return utime + stime;
}

} // namespace vx::bench
