#include "ws_security.h"

#include <openssl/evp.h>
#include <openssl/rand.h>
#include <openssl/sha.h>

#include <random>

#include "xml_tags.h"

namespace onvif {

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

std::string randomBytes(std::size_t count)
{
    std::string bytes(count, '\0');
    if (RAND_bytes(reinterpret_cast<unsigned char*>(bytes.data()), static_cast<int>(count)) != 1) {
        std::random_device device;
        for (char& c : bytes)
            c = static_cast<char>(device());
    }
    return bytes;
}

std::string passwordDigest(const std::string& nonce, const std::string& created, const std::string& password)
{
    const std::string input = nonce + created + password;
    unsigned char hash[SHA_DIGEST_LENGTH];
    SHA1(reinterpret_cast<const unsigned char*>(input.data()), input.size(), hash);
    return base64Encode(std::string(reinterpret_cast<const char*>(hash), sizeof hash));
}

std::string formatCreated(std::int64_t epochSeconds)
{
    const std::time_t t = static_cast<std::time_t>(epochSeconds);
    std::tm parts{};
    if (!gmtime_r(&t, &parts))
        return "1970-01-01T00:00:00Z";
    char text[32];
    std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%SZ", &parts);
    return text;
}

std::optional<std::int64_t> utcSeconds(int year, int month, int day, int hour, int minute, int second)
{
    if (year < 1970 || year > 9999 || month < 1 || month > 12 || day < 1 || day > 31 || hour < 0 || hour > 23
        || minute < 0 || minute > 59 || second < 0 || second > 60)
        return std::nullopt;
    std::tm parts{};
    parts.tm_year = year - 1900;
    parts.tm_mon = month - 1;
    parts.tm_mday = day;
    parts.tm_hour = hour;
    parts.tm_min = minute;
    parts.tm_sec = second;
    return static_cast<std::int64_t>(timegm(&parts));
}

UsernameToken makeUsernameToken(const std::string& username, const std::string& password,
                                std::int64_t createdEpochSeconds)
{
    UsernameToken token;
    token.username = username;
    const std::string nonce = randomBytes(16);
    token.nonce = base64Encode(nonce);
    token.created = formatCreated(createdEpochSeconds);
    token.passwordDigest = passwordDigest(nonce, token.created, password);
    return token;
}

std::string securityHeader(const UsernameToken& token)
{
    return "<wsse:Security s:mustUnderstand=\"1\" "
           "xmlns:wsse=\"http://docs.oasis-open.org/wss/2004/01/oasis-200401-wss-wssecurity-secext-1.0.xsd\" "
           "xmlns:wsu=\"http://docs.oasis-open.org/wss/2004/01/oasis-200401-wss-wssecurity-utility-1.0.xsd\">"
           "<wsse:UsernameToken><wsse:Username>"
        + escapeXml(token.username)
        + "</wsse:Username><wsse:Password Type=\"http://docs.oasis-open.org/wss/2004/01/"
          "oasis-200401-wss-username-token-profile-1.0#PasswordDigest\">"
        + token.passwordDigest
        + "</wsse:Password><wsse:Nonce EncodingType=\"http://docs.oasis-open.org/wss/2004/01/"
          "oasis-200401-wss-soap-message-security-1.0#Base64Binary\">"
        + token.nonce + "</wsse:Nonce><wsu:Created>" + token.created
        + "</wsu:Created></wsse:UsernameToken></wsse:Security>";
}

} // namespace onvif
