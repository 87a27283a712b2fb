#include "onvif_addresses.h"

#include <algorithm>
#include <cctype>

namespace onvif {

namespace {

std::string lower(std::string_view text)
{
    std::string out(text);
    for (char& c : out)
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return out;
}

bool allDigits(std::string_view text)
{
    return !text.empty() && std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

} // namespace

std::optional<Url> parseUrl(std::string_view text)
{
    const std::size_t schemeEnd = text.find("://");
    if (schemeEnd == std::string_view::npos || schemeEnd == 0)
        return std::nullopt;
    Url url;
    url.scheme = lower(text.substr(0, schemeEnd));
    std::string_view rest = text.substr(schemeEnd + 3);
    const std::size_t slash = rest.find_first_of("/?");
    std::string_view authority = rest.substr(0, slash);
    if (slash != std::string_view::npos)
        url.path = std::string(rest.substr(slash));
    // Credentials in the link are no part of the host.
    const std::size_t at = authority.rfind('@');
    if (at != std::string_view::npos)
        authority = authority.substr(at + 1);
    if (authority.starts_with('[')) {
        const std::size_t close = authority.find(']');
        if (close == std::string_view::npos)
            return std::nullopt;
        url.host = std::string(authority.substr(1, close - 1));
        authority = authority.substr(close + 1);
        if (authority.starts_with(':'))
            authority.remove_prefix(1);
        else if (!authority.empty())
            return std::nullopt;
    } else {
        const std::size_t colon = authority.find(':');
        url.host = std::string(authority.substr(0, colon));
        authority = colon == std::string_view::npos ? std::string_view() : authority.substr(colon + 1);
    }
    // What is left is the port, written twice by some cameras
    // ("host:8106:8106"): the first one counts.
    const std::size_t colon = authority.find(':');
    const std::string_view port = authority.substr(0, colon);
    if (!port.empty() && !allDigits(port))
        return std::nullopt;
    url.port = std::string(port);
    if (url.host.empty())
        return std::nullopt;
    return url;
}

std::string formatUrl(const Url& url)
{
    std::string text = url.scheme + "://";
    text += url.host.find(':') != std::string::npos ? "[" + url.host + "]" : url.host;
    if (!url.port.empty())
        text += ":" + url.port;
    return text + url.path;
}

bool isLinkLocalIpv4(const std::string& host) { return isIpv4(host) && host.starts_with("169.254."); }

bool isUnusableHost(const std::string& host)
{
    const std::string h = lower(host);
    return h.empty() || h == "0.0.0.0" || h == "localhost" || h == "::" || h == "::1"
        || (isIpv4(h) && h.starts_with("127."));
}

HostPort splitHostPort(const std::string& address)
{
    const std::size_t colon = address.rfind(':');
    if (colon != std::string::npos && address.find(':') == colon && allDigits(std::string_view(address).substr(colon + 1)))
        return {address.substr(0, colon), address.substr(colon + 1)};
    return {address, {}};
}

std::optional<std::string> repairServiceAddress(const std::string& xaddr, const std::string& cameraHost,
                                                const std::string& defaultPath)
{
    auto url = parseUrl(xaddr);
    if (!url)
        return std::nullopt;
    if (url->scheme != "http" && url->scheme != "https")
        return std::nullopt;
    if (!cameraHost.empty() && lower(url->host) != lower(cameraHost))
        url->host = cameraHost;
    if (url->path.empty() || url->path == "/")
        url->path = defaultPath;
    return formatUrl(*url);
}

std::string repairStreamUri(const std::string& uri, const std::string& cameraHost)
{
    auto url = parseUrl(uri);
    if (!url || !isUnusableHost(url->host) || cameraHost.empty())
        return uri;
    // Keep everything of the link but the host, credentials included.
    const std::size_t schemeEnd = uri.find("://") + 3;
    const std::size_t authorityEnd = uri.find_first_of("/?", schemeEnd);
    std::string authority = uri.substr(schemeEnd, authorityEnd == std::string::npos ? std::string::npos
                                                                                     : authorityEnd - schemeEnd);
    const std::size_t at = authority.rfind('@');
    const std::string credentials = at == std::string::npos ? std::string() : authority.substr(0, at + 1);
    std::string repaired = uri.substr(0, schemeEnd) + credentials + cameraHost;
    if (!url->port.empty())
        repaired += ":" + url->port;
    return repaired + url->path;
}

std::vector<std::string> splitXAddrs(std::string_view xaddrs)
{
    std::vector<std::string> out;
    std::size_t p = 0;
    while (p < xaddrs.size()) {
        while (p < xaddrs.size() && std::isspace(static_cast<unsigned char>(xaddrs[p])))
            ++p;
        std::size_t end = p;
        while (end < xaddrs.size() && !std::isspace(static_cast<unsigned char>(xaddrs[end])))
            ++end;
        if (end > p)
            out.emplace_back(xaddrs.substr(p, end - p));
        p = end;
    }
    return out;
}

std::vector<std::string> httpFirst(std::vector<std::string> addresses)
{
    std::stable_partition(addresses.begin(), addresses.end(),
                          [](const std::string& a) { return lower(a).starts_with("http://"); });
    return addresses;
}

} // namespace onvif
