#pragma once
// Text files as the platform's text mode writes them. Every writer of a text
// file (config files, white lists) builds its text with "\n" and hands it to
// toTextMode on the way to the disk, so the line end is chosen here alone:
// carriage return and line feed on Windows, a line feed here. Readers accept
// both. Paths that a text names are built with pathSeparator (paths.h), '\\'
// on Windows, where a JSON file doubles it.
#include <string>
#include <string_view>

namespace vx::platform {

// The platform's line end in text files ("\r\n" on Windows, "\n" here).
extern const char* const textLineEnd;

// `text` with each "\n" replaced by textLineEnd, byte for byte otherwise; a
// "\r\n" already in the text thus gains a second carriage return, as it does
// through a text-mode stream.
std::string toTextMode(std::string_view text);

} // namespace vx::platform
