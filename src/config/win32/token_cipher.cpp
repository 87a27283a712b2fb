// The token's block cipher through CNG (BCrypt): the AES provider switched to
// ECB chaining, with BCrypt's block padding, which is the same PKCS#7 padding
// OpenSSL uses, so files move between the two builds.
#include "config/token_block_cipher.h"

#include <vector>

#include <windows.h>
#include <bcrypt.h>

namespace vx::config {
namespace {

bool succeeded(NTSTATUS status) { return status >= 0; }

// One provider and key per call: tokens are enciphered a handful of times per
// save, and nothing is kept between calls.
class AesEcbKey {
public:
    explicit AesEcbKey(const unsigned char (&key)[tokenKeySize]) {
        if (!succeeded(BCryptOpenAlgorithmProvider(&algorithm_, BCRYPT_AES_ALGORITHM, nullptr, 0))) {
            algorithm_ = nullptr;
            return;
        }
        auto* mode = reinterpret_cast<PUCHAR>(const_cast<wchar_t*>(BCRYPT_CHAIN_MODE_ECB));
        if (!succeeded(BCryptSetProperty(algorithm_, BCRYPT_CHAINING_MODE, mode,
                                         sizeof(BCRYPT_CHAIN_MODE_ECB), 0)))
            return;
        if (!succeeded(BCryptGenerateSymmetricKey(algorithm_, &key_, nullptr, 0, const_cast<PUCHAR>(key),
                                                  tokenKeySize, 0)))
            key_ = nullptr;
    }
    ~AesEcbKey() {
        if (key_) BCryptDestroyKey(key_);
        if (algorithm_) BCryptCloseAlgorithmProvider(algorithm_, 0);
    }
    AesEcbKey(const AesEcbKey&) = delete;
    AesEcbKey& operator=(const AesEcbKey&) = delete;
    BCRYPT_KEY_HANDLE handle() const { return key_; }

private:
    BCRYPT_ALG_HANDLE algorithm_ = nullptr;
    BCRYPT_KEY_HANDLE key_ = nullptr;
};

bool runCipher(bool encipher, const unsigned char (&keyBytes)[tokenKeySize], const std::string& in,
               std::string& out) {
    AesEcbKey key(keyBytes);
    if (!key.handle()) return false;
    // The input is only read, whatever the signature says.
    auto* data = reinterpret_cast<PUCHAR>(const_cast<char*>(in.data()));
    const auto size = static_cast<ULONG>(in.size());
    std::vector<UCHAR> buffer(in.size() + 16);
    ULONG written = 0;
    const NTSTATUS status =
        encipher ? BCryptEncrypt(key.handle(), data, size, nullptr, nullptr, 0, buffer.data(),
                                 static_cast<ULONG>(buffer.size()), &written, BCRYPT_BLOCK_PADDING)
                 : BCryptDecrypt(key.handle(), data, size, nullptr, nullptr, 0, buffer.data(),
                                 static_cast<ULONG>(buffer.size()), &written, BCRYPT_BLOCK_PADDING);
    if (!succeeded(status)) return false;
    out.assign(reinterpret_cast<const char*>(buffer.data()), written);
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
