#include "support/time_scale.h"

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
    const double scaled = timeoutMs * scale;
    return scaled >= std::numeric_limits<int>::max() ? std::numeric_limits<int>::max()
                                                       : static_cast<int>(scaled);
}

} // namespace vx::test
