#pragma once
// Texts for the Win32 calls: the core's texts are Windows-1251, the W calls
// take UTF-16.
#include <string>

namespace vx::ui::win32 {

// A Windows-1251 text of the core.
std::wstring wideOf(const std::string& cp1251);
// A UTF-8 literal of this front end.
std::wstring wideLiteral(const char* utf8);
// What a W call gave, as a Windows-1251 text of the core.
std::string cp1251Of(const std::wstring& wide);

} // namespace vx::ui::win32
