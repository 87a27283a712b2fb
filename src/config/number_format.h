#pragma once
// How the config writers print numbers.
#include <string>

namespace vx::config {

// A real number as a standard stream prints it by default, in the classic
// locale: up to six significant digits, no trailing zeros, so 0.25 is "0.25",
// 1.0 is "1", 0.05 is "0.05", 1234567.0 is "1.23457e+06".
std::string formatReal(double value);

} // namespace vx::config
