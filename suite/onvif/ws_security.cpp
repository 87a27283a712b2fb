#include "ws_security.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <random>

#include "hashes.h"
#include "xml_tags.h"

namespace onvif {

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
