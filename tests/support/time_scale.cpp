#include "support/time_scale.h"

#include <algorithm>
#include <cstdlib>
#include <limits>

namespace vx::test {

int scaledMs(int timeoutMs)
{
    static const double scale = [] {
        const char* text = std::getenv("VEXLANE_TEST_TIME_SCALE");
        const double value = text ? std::strtod(text, nullptr) : 1.0;
        return value > 1.0 && value <= 100.0 ? value : 1.0;
    }();
    return static_cast<int>(std::min<double>(timeoutMs * scale, std::numeric_limits<int>::max()));
}

} // namespace vx::test
