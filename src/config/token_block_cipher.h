#pragma once
// AES-128 in ECB mode with standard block padding (PKCS#7), done by the
// platform's cipher library: OpenSSL's EVP on Linux (posix/), CNG's BCrypt
// on Windows (win32/). Both give the same bytes for the same key and text.
#include <string>

namespace vx::config {

inline constexpr std::size_t tokenKeySize = 16;

// Enciphers `plain` (any length, empty included) into whole blocks. False
// when the library refuses.
bool encipherBlocks(const unsigned char (&key)[tokenKeySize], const std::string& plain, std::string& cipher);
// The reverse. False for a length that isn't whole blocks, a bad padding, or
// anything else the library refuses.
bool decipherBlocks(const unsigned char (&key)[tokenKeySize], const std::string& cipher, std::string& plain);

} // namespace vx::config
