// Digests and random bytes from CNG (BCrypt), Base64 from CryptoAPI.
#include "hashes.h"

#include <windows.h>

#include <bcrypt.h>
#include <wincrypt.h>

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

std::string base64Encode(const std::string& bytes)
{
    const auto* data = reinterpret_cast<const BYTE*>(bytes.data());
    const DWORD flags = CRYPT_STRING_BASE64 | CRYPT_STRING_NOCRLF;
    DWORD size = 0;
    if (bytes.empty() || !::CryptBinaryToStringA(data, static_cast<DWORD>(bytes.size()), flags, nullptr, &size))
        return {};
    std::string out(size, '\0');
    if (!::CryptBinaryToStringA(data, static_cast<DWORD>(bytes.size()), flags, out.data(), &size))
        return {};
    out.resize(size);   // the count without the closing zero
    return out;
}

std::optional<std::string> base64Decode(const std::string& text)
{
    if (text.size() % 4 != 0)
        return std::nullopt;
    if (text.empty())
        return std::string();
    DWORD size = 0;
    if (!::CryptStringToBinaryA(text.data(), static_cast<DWORD>(text.size()), CRYPT_STRING_BASE64, nullptr, &size,
                                nullptr, nullptr))
        return std::nullopt;
    std::string out(size, '\0');
    if (!::CryptStringToBinaryA(text.data(), static_cast<DWORD>(text.size()), CRYPT_STRING_BASE64,
                                reinterpret_cast<BYTE*>(out.data()), &size, nullptr, nullptr))
        return std::nullopt;
    out.resize(size);
    return out;
}

} // namespace onvif
