// The one number formatter a crash handler may use: no allocation, no locale,
// nothing that isn't safe inside a signal or exception handler.
#include "platform/crash_report.h"

namespace vx::platform {

const char* formatDecimal(long long value, char* out)
{
    char digits[24];
    int n = 0;
    const bool negative = value < 0;
    unsigned long long magnitude = negative ? 0ull - static_cast<unsigned long long>(value)
                                            : static_cast<unsigned long long>(value);
    do {
        digits[n++] = static_cast<char>('0' + magnitude % 10);
        magnitude /= 10;
    } while (magnitude > 0);
    int at = 0;
    if (negative)
        out[at++] = '-';
    while (n > 0)
        out[at++] = digits[--n];
    out[at] = '\0';
    return out;
}

} // namespace vx::platform
