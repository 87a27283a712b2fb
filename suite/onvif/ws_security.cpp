#include "ws_security.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <random>

#include "hashes.h"
#include "xml_tags.h"

namespace onvif {

namespace {

constexpr const char* base64Alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

int base64Value(char c)
{
    if (c >= 'A' && c <= 'Z')
        return c - 'A';
    if (c >= 'a' && c <= 'z')
        return c - 'a' + 26;
    if (c >= '0' && c <= '9')
        return c - '0' + 52;
    if (c == '+')
        return 62;
    if (c == '/')
        return 63;
    return -1;
}

} // namespace

std::string base64Encode(const std::string& bytes)
{
    std::string out;
    out.reserve(4 * ((bytes.size() + 2) / 3));
    for (std::size_t i = 0; i < bytes.size(); i += 3) {
        const std::size_t n = std::min<std::size_t>(3, bytes.size() - i);
        std::uint32_t group = 0;
        for (std::size_t k = 0; k < 3; ++k)
            group = group << 8 | (k < n ? static_cast<unsigned char>(bytes[i + k]) : 0u);
        for (std::size_t k = 0; k < 4; ++k)
            out += k <= n ? base64Alphabet[(group >> (18 - 6 * k)) & 63] : '=';
    }
    return out;
}

std::optional<std::string> base64Decode(const std::string& text)
{
    if (text.size() % 4 != 0)
        return std::nullopt;
    std::string out;
    for (std::size_t i = 0; i < text.size(); i += 4) {
        const bool last = i + 4 == text.size();
        std::uint32_t group = 0;
        int padding = 0;
        for (std::size_t k = 0; k < 4; ++k) {
            const char c = text[i + k];
            int value = base64Value(c);
            if (c == '=' && last && k >= 2 && (k == 3 || text[i + 3] == '=')) {
                ++padding;
                value = 0;
            } else if (value < 0 || padding > 0) {
                return std::nullopt;
            }
            group = group << 6 | static_cast<std::uint32_t>(value);
        }
        for (int k = 0; k < 3 - padding; ++k)
            out += static_cast<char>((group >> (16 - 8 * k)) & 0xFF);
    }
    return out;
}

std::string hexText(const std::string& bytes)
{
    static const char digits[] = "0123456789abcdef";
    std::string hex;
    for (unsigned char c : bytes) {
        hex += digits[c >> 4];
        hex += digits[c & 15];
    }
    return hex;
}

std::string randomBytes(std::size_t count)
{
    std::string bytes;
    if (!secureRandom(bytes, count)) {
        std::random_device device;
        bytes.assign(count, '\0');
        for (char& c : bytes)
            c = static_cast<char>(device());
    }
    return bytes;
}

std::string passwordDigest(const std::string& nonce, const std::string& created, const std::string& password)
{
    return base64Encode(hashBytes(HashKind::sha1, nonce + created + password));
}

std::string formatCreated(std::int64_t epochSeconds)
{
    using namespace std::chrono;
    const sys_seconds t{seconds(epochSeconds)};
    const sys_days day = floor<days>(t);
    const year_month_day date{day};
    const hh_mm_ss time{t - day};
    char text[32];
    std::snprintf(text, sizeof text, "%04d-%02u-%02uT%02d:%02d:%02dZ", static_cast<int>(date.year()),
                  static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                  static_cast<int>(time.hours().count()), static_cast<int>(time.minutes().count()),
                  static_cast<int>(time.seconds().count()));
    return text;
}

std::optional<std::int64_t> utcSeconds(int year, int month, int day, int hour, int minute, int second)
{
    if (year < 1970 || year > 9999 || month < 1 || month > 12 || day < 1 || day > 31 || hour < 0 || hour > 23
        || minute < 0 || minute > 59 || second < 0 || second > 60)
        return std::nullopt;
    using namespace std::chrono;
    // Day 31 of a short month runs on into the next, as timegm does.
    const sys_days date = sys_days{std::chrono::year(year) / std::chrono::month(static_cast<unsigned>(month)) / 1}
        + days(day - 1);
    return static_cast<std::int64_t>(date.time_since_epoch().count()) * 86400 + hour * 3600 + minute * 60 + second;
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
