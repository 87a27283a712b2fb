#pragma once
// The escaping the config writers apply to string values by hand, and its
// reverse. The writers never use a JSON library, so these decide the bytes
// that reach the files. All three work byte by byte and leave bytes of 128
// and above alone, so they serve 1251 and UTF-8 text alike.
#include <string>

namespace vx::config {

// Every "\" becomes "\\"; nothing else changes. This is all the escaping a
// path gets, so a quotation mark in a path breaks the file.
std::string doubleBackslashes(const std::string& text);

// Full escaping for free text: backspace, tab, newline, form feed and
// carriage return become \b \t \n \f \r, '"' becomes \", '\' becomes \\, any
// other byte below 32 becomes \u00xx (lower-case hex); the rest passes.
std::string escapeJsonText(const std::string& text);

// Applied to a value the parser has already unescaped once. A "\" followed by
// one of " \ b f n r t becomes that character. "\u" with at least four
// characters after the "u" is copied as six characters unchanged (not
// decoded). Any other "\" - at the end, before another character, or before
// a "u" with fewer than four characters after it - stays as it is.
std::string unescapeJsonText(const std::string& text);

} // namespace vx::config
