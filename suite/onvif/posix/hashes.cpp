// Digests, random bytes and Base64 from OpenSSL's libcrypto.
#include "hashes.h"

#include <openssl/evp.h>
#include <openssl/rand.h>

namespace onvif {

std::string hashBytes(HashKind kind, std::string_view input)
{
    const EVP_MD* md = kind == HashKind::md5 ? EVP_md5() : kind == HashKind::sha1 ? EVP_sha1() : EVP_sha256();
    unsigned char hash[EVP_MAX_MD_SIZE];
    unsigned int size = 0;
    if (EVP_Digest(input.data(), input.size(), hash, &size, md, nullptr) != 1)
        return {};
    return std::string(reinterpret_cast<const char*>(hash), size);
}

bool secureRandom(std::string& bytes, std::size_t count)
{
    bytes.assign(count, '\0');
    return RAND_bytes(reinterpret_cast<unsigned char*>(bytes.data()), static_cast<int>(count)) == 1;
}

std::string base64Encode(const std::string& bytes)
{
    std::string out(4 * ((bytes.size() + 2) / 3) + 1, '\0');
    const int n = EVP_EncodeBlock(reinterpret_cast<unsigned char*>(out.data()),
                                  reinterpret_cast<const unsigned char*>(bytes.data()), static_cast<int>(bytes.size()));
    out.resize(n < 0 ? 0 : static_cast<std::size_t>(n));
    return out;
}

std::optional<std::string> base64Decode(const std::string& text)
{
    if (text.size() % 4 != 0)
        return std::nullopt;
    std::string out(text.size() / 4 * 3 + 1, '\0');
    const int n = EVP_DecodeBlock(reinterpret_cast<unsigned char*>(out.data()),
                                  reinterpret_cast<const unsigned char*>(text.data()), static_cast<int>(text.size()));
    if (n < 0)
        return std::nullopt;
    std::size_t size = static_cast<std::size_t>(n);
    // EVP_DecodeBlock counts the padding as zero bytes.
    for (std::size_t i = text.size(); i > 0 && text[i - 1] == '=' && size > 0; --i)
        --size;
    out.resize(size);
    return out;
}

} // namespace onvif
