// The token's block cipher through OpenSSL's EVP interface.
#include "config/token_block_cipher.h"

#include <memory>
#include <vector>

#include <openssl/evp.h>

namespace vx::config {
namespace {

using CipherContext = std::unique_ptr<EVP_CIPHER_CTX, decltype(&EVP_CIPHER_CTX_free)>;

bool runCipher(bool encipher, const unsigned char (&key)[tokenKeySize], const std::string& in, std::string& out) {
    CipherContext context(EVP_CIPHER_CTX_new(), &EVP_CIPHER_CTX_free);
    if (!context) return false;
    std::vector<unsigned char> buffer(in.size() + 16);
    int length = 0;
    int finalLength = 0;
    const auto* data = reinterpret_cast<const unsigned char*>(in.data());
    const int size = static_cast<int>(in.size());
    const bool done =
        encipher ? EVP_EncryptInit_ex(context.get(), EVP_aes_128_ecb(), nullptr, key, nullptr) == 1 &&
                       EVP_CIPHER_CTX_set_padding(context.get(), 1) == 1 &&
                       EVP_EncryptUpdate(context.get(), buffer.data(), &length, data, size) == 1 &&
                       EVP_EncryptFinal_ex(context.get(), buffer.data() + length, &finalLength) == 1
                 : EVP_DecryptInit_ex(context.get(), EVP_aes_128_ecb(), nullptr, key, nullptr) == 1 &&
                       EVP_DecryptUpdate(context.get(), buffer.data(), &length, data, size) == 1 &&
                       EVP_DecryptFinal_ex(context.get(), buffer.data() + length, &finalLength) == 1;
    if (!done) return false;
    out.assign(reinterpret_cast<const char*>(buffer.data()), static_cast<std::size_t>(length + finalLength));
    return true;
}

} // namespace

bool encipherBlocks(const unsigned char (&key)[tokenKeySize], const std::string& plain, std::string& cipher) {
    return runCipher(true, key, plain, cipher);
}

bool decipherBlocks(const unsigned char (&key)[tokenKeySize], const std::string& cipher, std::string& plain) {
    return runCipher(false, key, cipher, plain);
}

} // namespace vx::config
