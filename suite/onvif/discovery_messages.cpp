#include "discovery_messages.h"

#include <algorithm>
#include <cctype>
#include <cstdio>

#include "onvif_addresses.h"
#include "ws_security.h"
#include "xml_tags.h"

namespace onvif {

namespace {

bool startsWithNoCase(std::string_view text, std::string_view prefix)
{
    if (text.size() < prefix.size())
        return false;
    for (std::size_t i = 0; i < prefix.size(); ++i)
        if (std::tolower(static_cast<unsigned char>(text[i])) != std::tolower(static_cast<unsigned char>(prefix[i])))
            return false;
    return true;
}

int hexValue(char c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return -1;
}

} // namespace

std::string newMessageId()
{
    std::string bytes = randomBytes(16);
    bytes[6] = static_cast<char>((bytes[6] & 0x0F) | 0x40);
    bytes[8] = static_cast<char>((bytes[8] & 0x3F) | 0x80);
    std::string text = "urn:uuid:";
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        if (i == 4 || i == 6 || i == 8 || i == 10)
            text += '-';
        char hex[3];
        std::snprintf(hex, sizeof hex, "%02x", static_cast<unsigned char>(bytes[i]));
        text += hex;
    }
    return text;
}

std::string probeMessage(const std::string& messageId, ProbeType type)
{
    const bool nvt = type == ProbeType::networkVideoTransmitter;
    const std::string typeNamespace =
        nvt ? "http://www.onvif.org/ver10/network/wsdl" : "http://www.onvif.org/ver10/device/wsdl";
    const std::string typePrefix = nvt ? "dn" : "tds";
    const std::string typeName = nvt ? "NetworkVideoTransmitter" : "Device";
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>"
           "<s:Envelope xmlns:s=\"http://www.w3.org/2003/05/soap-envelope\" "
           "xmlns:a=\"http://schemas.xmlsoap.org/ws/2004/08/addressing\">"
           "<s:Header>"
           "<a:Action s:mustUnderstand=\"1\">http://schemas.xmlsoap.org/ws/2005/04/discovery/Probe</a:Action>"
           "<a:MessageID>"
        + messageId
        + "</a:MessageID>"
          "<a:ReplyTo><a:Address>http://schemas.xmlsoap.org/ws/2004/08/addressing/role/anonymous</a:Address>"
          "</a:ReplyTo>"
          "<a:To s:mustUnderstand=\"1\">urn:schemas-xmlsoap-org:ws:2005:04:discovery</a:To>"
          "</s:Header>"
          "<s:Body><Probe xmlns=\"http://schemas.xmlsoap.org/ws/2005/04/discovery\">"
          "<d:Types xmlns:d=\"http://schemas.xmlsoap.org/ws/2005/04/discovery\" xmlns:"
        + typePrefix + "=\"" + typeNamespace + "\">" + typePrefix + ":" + typeName
        + "</d:Types></Probe></s:Body></s:Envelope>";
}

std::vector<ProbeMatch> parseProbeMatches(std::string_view message)
{
    std::vector<ProbeMatch> matches;
    const auto body = findFirst(message, "Body");
    const auto list = findFirst(body ? body->inner : message, "ProbeMatches");
    if (!list)
        return matches;
    for (const XmlElement& element : findAll(list->inner, "ProbeMatch")) {
        ProbeMatch match;
        match.endpoint = textAt(element.inner, {"EndpointReference", "Address"}).value_or("");
        match.types = textAt(element.inner, {"Types"}).value_or("");
        match.scopes = textAt(element.inner, {"Scopes"}).value_or("");
        match.xaddrs = splitXAddrs(textAt(element.inner, {"XAddrs"}).value_or(""));
        matches.push_back(std::move(match));
    }
    return matches;
}

std::string chooseIp(const std::vector<std::string>& xaddrs, const std::string& sourceAddress)
{
    std::vector<std::string> hosts;
    for (const std::string& xaddr : xaddrs)
        if (auto url = parseUrl(xaddr); url && isIpv4(url->host))
            hosts.push_back(url->host);
    for (const std::string& host : hosts)
        if (host == sourceAddress)
            return host;
    for (const std::string& host : hosts)
        if (!isLinkLocalIpv4(host) && !isUnusableHost(host))
            return host;
    return sourceAddress;
}

std::string percentDecode(std::string_view text)
{
    std::string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (c == '+') {
            out += ' ';
        } else if (c == '%' && i + 2 < text.size() && hexValue(text[i + 1]) >= 0 && hexValue(text[i + 2]) >= 0) {
            out += static_cast<char>(hexValue(text[i + 1]) * 16 + hexValue(text[i + 2]));
            i += 2;
        } else {
            out += c;
        }
    }
    return out;
}

std::string cameraName(std::string_view scopes)
{
    static constexpr std::string_view namePrefix = "onvif://www.onvif.org/name/";
    static constexpr std::string_view hardwarePrefix = "onvif://www.onvif.org/hardware/";
    const std::vector<std::string> list = splitXAddrs(scopes);
    for (const std::string& scope : list)
        if (startsWithNoCase(scope, namePrefix))
            return percentDecode(std::string_view(scope).substr(namePrefix.size()));
    for (const std::string& scope : list)
        if (startsWithNoCase(scope, hardwarePrefix))
            return percentDecode(std::string_view(scope).substr(hardwarePrefix.size()));
    return {};
}

void FoundCameras::add(const ProbeMatch& match, const std::string& sourceAddress)
{
    FoundCamera camera;
    camera.ip = chooseIp(match.xaddrs, sourceAddress);
    camera.name = cameraName(match.scopes);
    camera.key = match.endpoint.empty() ? camera.ip : match.endpoint;
    const bool known = std::any_of(cameras_.begin(), cameras_.end(),
                                   [&](const FoundCamera& c) { return c.key == camera.key; });
    if (!known)
        cameras_.push_back(std::move(camera));
}

} // namespace onvif
