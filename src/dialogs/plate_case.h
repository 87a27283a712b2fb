#pragma once
// Upper case for a plate typed into the entry dialog, over Windows-1251.
#include <string>

namespace vx::dialogs {

// Latin "a".."z" and Cyrillic "а".."я" lose 32, "ё" becomes "Ё"; nothing else
// changes (blanks stay, the alphabets are not mapped onto each other).
std::string upperCasePlate(const std::string& text);

} // namespace vx::dialogs
