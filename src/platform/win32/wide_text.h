#pragma once
// UTF-8 (the interfaces' text) to and from UTF-16 (the W functions), and the
// system's text for an error code. Internal to the Win32 platform files.
#include <string>

namespace vx::platform::win32 {

std::wstring widen(const std::string& text);
std::string narrow(const std::wstring& text);
// The system's message for `code` (GetLastError's value), without its line end.
std::string errorText(unsigned long code);

} // namespace vx::platform::win32
