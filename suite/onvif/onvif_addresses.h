#pragma once
// Addresses as cameras hand them out, and the repairs they need: service
// addresses that name another host (NAT, factory settings, 127.0.0.1), no
// path, a doubled port; stream links on 0.0.0.0 or loopback.
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace onvif {

struct Url {
    std::string scheme;   // lower case
    std::string host;     // IPv6 without its brackets
    std::string port;     // empty when none is written
    std::string path;     // from the first '/', query included; may be empty
};

std::optional<Url> parseUrl(std::string_view text);
std::string formatUrl(const Url& url);

// A dotted IPv4 address, as the system's address parser reads one (defined
// beside the platform's sockets).
bool isIpv4(const std::string& host);
// 0.0.0.0, loopback, "localhost", "::", "::1" or empty: a host nobody else can reach.
bool isUnusableHost(const std::string& host);
bool isLinkLocalIpv4(const std::string& host);

// The operator's address "IP" or "IP:PORT" split into its parts.
struct HostPort {
    std::string host;
    std::string port;
};
HostPort splitHostPort(const std::string& address);

// A service address of the camera fit for use: a doubled port mended, the
// host replaced by the address the operator chose (scheme, port and path
// kept), and `defaultPath` put in when the address has none. Nothing when
// it can't be read at all.
std::optional<std::string> repairServiceAddress(const std::string& xaddr, const std::string& cameraHost,
                                                const std::string& defaultPath);
// A stream link whose host is unusable gets the camera's host, its own
// port kept. Other links stay as they are.
std::string repairStreamUri(const std::string& uri, const std::string& cameraHost);

// The addresses of a whitespace-separated XAddrs list, http ones first.
std::vector<std::string> splitXAddrs(std::string_view xaddrs);
std::vector<std::string> httpFirst(std::vector<std::string> addresses);

} // namespace onvif
