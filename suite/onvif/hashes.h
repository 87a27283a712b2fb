#pragma once
// The digests, random bytes and Base64 of the authentication schemes, from
// the system's cryptography.
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace onvif {

enum class HashKind { md5, sha1, sha256 };

// The raw digest of `input`.
std::string hashBytes(HashKind kind, std::string_view input);
// `count` bytes from the system's secure generator; false when it failed.
bool secureRandom(std::string& bytes, std::size_t count);

std::string base64Encode(const std::string& bytes);
// Nothing for text that isn't Base64.
std::optional<std::string> base64Decode(const std::string& text);

// Lower-case hex of raw bytes.
std::string hexText(const std::string& bytes);

} // namespace onvif
