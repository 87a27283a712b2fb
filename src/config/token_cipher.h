#pragma once
// The messenger token at rest: AES-128 in ECB mode with standard block
// padding, under a key compiled into the program (the same for every
// installation), written as lower-case hexadecimal.
#include <string>

namespace vx::config {

// Enciphers `plain` (bytes as they are) and returns two lower-case hex digits
// per cipher byte. An empty text gives an empty result.
std::string encipherToken(const std::string& plain);

// The reverse of encipherToken. Returns the plain bytes, or an empty text
// when `hex` is empty, holds anything but pairs of hex digits, or doesn't
// decipher under the program's key (wrong length, bad padding).
std::string decipherToken(const std::string& hex);

} // namespace vx::config
