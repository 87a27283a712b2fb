#include "maintenance/local_time.h"

#include <mutex>

namespace vx::maintenance {

std::tm localTimeOf(std::time_t time)
{
    // std::localtime shares one buffer in the C library; the lock makes the
    // copy-out safe without a platform's own reentrant variant.
    static std::mutex mutex;
    std::lock_guard<std::mutex> lock(mutex);
    const std::tm* broken = std::localtime(&time);
    return broken ? *broken : std::tm{};
}

std::string formatLocalTime(std::time_t time, const char* format)
{
    const std::tm broken = localTimeOf(time);
    char text[64];
    const std::size_t size = std::strftime(text, sizeof text, format, &broken);
    return std::string(text, size);
}

} // namespace vx::maintenance
