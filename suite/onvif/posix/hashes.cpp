// Digests and random bytes from OpenSSL's libcrypto.
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

} // namespace onvif
