#include "config/token_cipher.h"

#include <memory>
#include <vector>

#include <openssl/evp.h>

namespace vx::config {
namespace {

// The one place the key lives. Changing it makes every stored token
// unreadable.
constexpr char tokenKey[17] = "vXl4n3-M3ss-K3y!";
static_assert(sizeof(tokenKey) == 17, "the key is 16 characters");

using CipherContext = std::unique_ptr<EVP_CIPHER_CTX, decltype(&EVP_CIPHER_CTX_free)>;

const unsigned char* keyBytes() { return reinterpret_cast<const unsigned char*>(tokenKey); }

int hexValue(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

} // namespace

std::string encipherToken(const std::string& plain) {
    if (plain.empty()) return {};
    CipherContext context(EVP_CIPHER_CTX_new(), &EVP_CIPHER_CTX_free);
    if (!context) return {};
    std::vector<unsigned char> out(plain.size() + 16);
    int length = 0;
    int finalLength = 0;
    if (EVP_EncryptInit_ex(context.get(), EVP_aes_128_ecb(), nullptr, keyBytes(), nullptr) != 1 ||
        EVP_CIPHER_CTX_set_padding(context.get(), 1) != 1 ||
        EVP_EncryptUpdate(context.get(), out.data(), &length,
                          reinterpret_cast<const unsigned char*>(plain.data()),
                          static_cast<int>(plain.size())) != 1 ||
        EVP_EncryptFinal_ex(context.get(), out.data() + length, &finalLength) != 1)
        return {};
    static const char digits[] = "0123456789abcdef";
    std::string hex;
    hex.reserve(2 * static_cast<std::size_t>(length + finalLength));
    for (int i = 0; i < length + finalLength; ++i) {
        hex.push_back(digits[out[i] >> 4]);
        hex.push_back(digits[out[i] & 0x0f]);
    }
    return hex;
}

std::string decipherToken(const std::string& hex) {
    if (hex.empty() || hex.size() % 2 != 0) return {};
    std::vector<unsigned char> cipher;
    cipher.reserve(hex.size() / 2);
    for (std::size_t i = 0; i < hex.size(); i += 2) {
        const int high = hexValue(hex[i]);
        const int low = hexValue(hex[i + 1]);
        // A character that isn't a hex digit counts as a token that doesn't
        // decipher, rather than being read as some byte.
        if (high < 0 || low < 0) return {};
        cipher.push_back(static_cast<unsigned char>(high * 16 + low));
    }
    CipherContext context(EVP_CIPHER_CTX_new(), &EVP_CIPHER_CTX_free);
    if (!context) return {};
    std::vector<unsigned char> out(cipher.size() + 16);
    int length = 0;
    int finalLength = 0;
    if (EVP_DecryptInit_ex(context.get(), EVP_aes_128_ecb(), nullptr, keyBytes(), nullptr) != 1 ||
        EVP_DecryptUpdate(context.get(), out.data(), &length, cipher.data(),
                          static_cast<int>(cipher.size())) != 1 ||
        EVP_DecryptFinal_ex(context.get(), out.data() + length, &finalLength) != 1)
        return {};
    return std::string(reinterpret_cast<const char*>(out.data()), static_cast<std::size_t>(length + finalLength));
}

} // namespace vx::config
