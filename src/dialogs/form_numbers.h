#pragma once
// Numbers read back from the fields of a form: a field with no leading
// number, or one too large for the record, takes the value the form gives
// for a failed read.
#include <cstdint>

#include "dialogs/form_fields.h"

namespace vx::dialogs {

std::int32_t readInt32(const IntegerField& field, std::int32_t failed);
std::uint32_t readUint32(const IntegerField& field, std::uint32_t failed);
double readReal(const RealField& field, double failed);

// A stored list index put within the list's items (0 .. count - 1).
std::int32_t clampIndex(std::int32_t value, std::int32_t count);

} // namespace vx::dialogs
