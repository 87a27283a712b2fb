#include "config/token_cipher.h"

#include <cstring>

#include "config/token_block_cipher.h"

namespace vx::config {
namespace {

// The one place the key lives. Changing it makes every stored token
// unreadable.
constexpr char tokenKey[tokenKeySize + 1] = "vXl4n3-M3ss-K3y!";

int hexValue(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

struct Key {
    unsigned char bytes[tokenKeySize];
    Key() { std::memcpy(bytes, tokenKey, tokenKeySize); }
};

} // namespace

std::string encipherToken(const std::string& plain) {
    if (plain.empty()) return {};
    std::string cipher;
    if (!encipherBlocks(Key().bytes, plain, cipher)) return {};
    static const char digits[] = "0123456789abcdef";
    std::string hex;
    hex.reserve(2 * cipher.size());
    for (const char c : cipher) {
        const auto byte = static_cast<unsigned char>(c);
        hex.push_back(digits[byte >> 4]);
        hex.push_back(digits[byte & 0x0f]);
    }
    return hex;
}

std::string decipherToken(const std::string& hex) {
    if (hex.empty() || hex.size() % 2 != 0) return {};
    std::string cipher;
    cipher.reserve(hex.size() / 2);
    for (std::size_t i = 0; i < hex.size(); i += 2) {
        const int high = hexValue(hex[i]);
        const int low = hexValue(hex[i + 1]);
        // A character that isn't a hex digit counts as a token that doesn't
        // decipher, rather than being read as some byte.
        if (high < 0 || low < 0) return {};
        cipher.push_back(static_cast<char>(high * 16 + low));
    }
    std::string plain;
    if (!decipherBlocks(Key().bytes, cipher, plain)) return {};
    return plain;
}

} // namespace vx::config
