#include "dialogs/form_numbers.h"

#include <algorithm>
#include <limits>

namespace vx::dialogs {

std::int32_t readInt32(const IntegerField& field, std::int32_t failed)
{
    std::int64_t value = 0;
    if (!field.read(value) || value < std::numeric_limits<std::int32_t>::min() ||
        value > std::numeric_limits<std::int32_t>::max())
        return failed;
    return static_cast<std::int32_t>(value);
}

std::uint32_t readUint32(const IntegerField& field, std::uint32_t failed)
{
    std::int64_t value = 0;
    if (!field.read(value) || value < 0 || value > std::numeric_limits<std::uint32_t>::max())
        return failed;
    return static_cast<std::uint32_t>(value);
}

double readReal(const RealField& field, double failed)
{
    double value = 0;
    return field.read(value) ? value : failed;
}

std::int32_t clampIndex(std::int32_t value, std::int32_t count)
{
    return std::clamp(value, 0, std::max(count - 1, 0));
}

} // namespace vx::dialogs
