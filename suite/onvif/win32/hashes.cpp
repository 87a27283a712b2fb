// Digests and random bytes from CNG (BCrypt).
#include "hashes.h"

#include <windows.h>

#include <bcrypt.h>

namespace onvif {

namespace {

bool succeeded(NTSTATUS status) { return status >= 0; }

} // namespace

std::string hashBytes(HashKind kind, std::string_view input)
{
    const wchar_t* name = kind == HashKind::md5    ? BCRYPT_MD5_ALGORITHM
                          : kind == HashKind::sha1 ? BCRYPT_SHA1_ALGORITHM
                                                   : BCRYPT_SHA256_ALGORITHM;
    BCRYPT_ALG_HANDLE algorithm = nullptr;
    if (!succeeded(::BCryptOpenAlgorithmProvider(&algorithm, name, nullptr, 0)))
        return {};
    std::string digest;
    DWORD length = 0;
    ULONG got = 0;
    BCRYPT_HASH_HANDLE hash = nullptr;
    if (succeeded(::BCryptGetProperty(algorithm, BCRYPT_HASH_LENGTH, reinterpret_cast<PUCHAR>(&length),
                                      sizeof length, &got, 0))
        && succeeded(::BCryptCreateHash(algorithm, &hash, nullptr, 0, nullptr, 0, 0))) {
        std::string out(length, '\0');
        if (succeeded(::BCryptHashData(hash, reinterpret_cast<PUCHAR>(const_cast<char*>(input.data())),
                                       static_cast<ULONG>(input.size()), 0))
            && succeeded(::BCryptFinishHash(hash, reinterpret_cast<PUCHAR>(out.data()), length, 0)))
            digest = std::move(out);
        ::BCryptDestroyHash(hash);
    }
    ::BCryptCloseAlgorithmProvider(algorithm, 0);
    return digest;
}

bool secureRandom(std::string& bytes, std::size_t count)
{
    bytes.assign(count, '\0');
    return succeeded(::BCryptGenRandom(nullptr, reinterpret_cast<PUCHAR>(bytes.data()), static_cast<ULONG>(count),
                                       BCRYPT_USE_SYSTEM_PREFERRED_RNG));
}

} // namespace onvif
