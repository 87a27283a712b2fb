#include "http_digest.h"

#include <algorithm>
#include <cctype>
#include <map>

#include "hashes.h"

namespace onvif {

namespace {

std::string lower(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

// The name="value" (or name=value) pairs after "Digest ", names in lower case.
std::map<std::string, std::string> challengeFields(const std::string& text)
{
    std::map<std::string, std::string> fields;
    std::size_t p = 6;
    while (p < text.size()) {
        while (p < text.size() && (text[p] == ' ' || text[p] == ',' || text[p] == '\t'))
            ++p;
        const std::size_t eq = text.find('=', p);
        if (eq == std::string::npos)
            break;
        const std::string key = lower(text.substr(p, eq - p));
        p = eq + 1;
        std::string value;
        if (p < text.size() && text[p] == '"') {
            const std::size_t close = text.find('"', p + 1);
            if (close == std::string::npos)
                break;
            value = text.substr(p + 1, close - p - 1);
            p = close + 1;
        } else {
            const std::size_t comma = text.find(',', p);
            value = text.substr(p, comma == std::string::npos ? std::string::npos : comma - p);
            p = comma == std::string::npos ? text.size() : comma;
        }
        fields[key] = value;
    }
    return fields;
}

} // namespace

std::optional<std::string> digestAuthorization(const std::string& challenge, const std::string& method,
                                               const std::string& uri, const std::string& login,
                                               const std::string& password, const std::string& clientNonce)
{
    if (lower(challenge.substr(0, 7)) != "digest ")
        return std::nullopt;
    auto fields = challengeFields(challenge);
    const std::string algorithm = fields.count("algorithm") ? fields["algorithm"] : "MD5";
    const std::string name = lower(algorithm);
    HashKind kind;
    if (name == "md5" || name == "md5-sess")
        kind = HashKind::md5;
    else if (name == "sha-256" || name == "sha-256-sess")
        kind = HashKind::sha256;
    else
        return std::nullopt;
    const auto h = [kind](const std::string& text) { return hexText(hashBytes(kind, text)); };
    const std::string& nonce = fields["nonce"];
    std::string ha1 = h(login + ":" + fields["realm"] + ":" + password);
    if (name.ends_with("-sess"))
        ha1 = h(ha1 + ":" + nonce + ":" + clientNonce);
    const std::string ha2 = h(method + ":" + uri);
    const bool qopAuth = fields.count("qop") && lower(fields["qop"]).find("auth") != std::string::npos;
    const std::string nc = "00000001";
    const std::string response =
        qopAuth ? h(ha1 + ":" + nonce + ":" + nc + ":" + clientNonce + ":auth:" + ha2) : h(ha1 + ":" + nonce + ":" + ha2);
    std::string header = "Digest username=\"" + login + "\", realm=\"" + fields["realm"] + "\", nonce=\"" + nonce
        + "\", uri=\"" + uri + "\", algorithm=" + algorithm;
    if (qopAuth)
        header += ", qop=auth, nc=" + nc + ", cnonce=\"" + clientNonce + "\"";
    header += ", response=\"" + response + "\"";
    if (fields.count("opaque"))
        header += ", opaque=\"" + fields["opaque"] + "\"";
    return header;
}

} // namespace onvif
