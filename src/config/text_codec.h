#pragma once
// Conversions between the program's in-memory text (Windows-1251) and the
// text of files (UTF-8) or of the toolkit (UTF-16).
//
// The tables are our own, so every platform converts the same way. The
// results follow the Windows conversion through UTF-16 with code pages 1251
// and 65001, flags 0 and no default character:
//
//  - Byte 0x98 has no letter in Windows-1251. Windows decodes it as U+0098
//    and encodes U+0098 back to 0x98; we do the same, so a stray 0x98 in a
//    record survives a save and a load unchanged.
//  - A character with no Windows-1251 form becomes "?". (Windows would first
//    try its best-fit table, e.g. a Latin letter with an accent becoming the
//    bare letter; we don't carry that table: every such character is "?".)
//  - A character outside the Basic Multilingual Plane is two UTF-16 units,
//    and so becomes "??".
//  - Invalid UTF-8 decodes to U+FFFD, one for each maximal ill-formed part
//    (a lone continuation byte, a lead byte cut short, an overlong form, an
//    encoded surrogate...), and U+FFFD becomes "?" on the way to 1251.
//  - Every byte counts, including NUL bytes inside the string.
#include <string>

namespace vx::config {

std::string cp1251ToUtf8(const std::string& text);
std::string utf8ToCp1251(const std::string& text);

// The same for UTF-16, for the toolkit's strings. Each UTF-16 unit without a
// 1251 form, a surrogate included, becomes "?".
std::u16string cp1251ToUtf16(const std::string& text);
std::string utf16ToCp1251(const std::u16string& text);

} // namespace vx::config
