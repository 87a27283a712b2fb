#include "stream_link.h"

#include <algorithm>
#include <ctime>

#include "discovery_socket.h"
#include "onvif_addresses.h"
#include "trace.h"
#include "ws_security.h"
#include "xml_tags.h"

namespace onvif {

namespace {

constexpr int unicastProbeMs = 1500;

int number(const std::optional<std::string>& text)
{
    if (!text || text->empty() || text->size() > 6)
        return -1;
    for (char c : *text)
        if (c < '0' || c > '9')
            return -1;
    return std::stoi(*text);
}

std::string element(const char* ns, const std::string& name, const std::string& inner)
{
    return "<" + name + " xmlns=\"" + ns + "\">" + inner + "</" + name + ">";
}

class LinkSession {
public:
    explicit LinkSession(const LinkRequest& request)
        : request_(request), host_(splitHostPort(request.address).host),
          soap_(request.login, request.password, request.deadline)
    {
    }

    std::optional<std::string> run()
    {
        const std::optional<std::string> device = findDeviceService();
        if (!device)
            return std::nullopt;
        MediaAddresses media = mediaAddresses(*device);
        if (stop_)
            return std::nullopt;
        if (media.media.empty() && media.media2.empty())
            media.media = *device;   // some cameras serve everything at one address
        if (!media.media.empty())
            if (auto link = mediaLink(media.media))
                return link;
        if (stop_)
            return std::nullopt;
        if (!media.media2.empty())
            if (auto link = media2Link(media.media2))
                return link;
        return std::nullopt;
    }

private:
    // The first address that answers GetSystemDateAndTime with SOAP: the
    // usual path; the XAddrs of a unicast probe; two other usual paths.
    std::optional<std::string> findDeviceService()
    {
        const std::string usual = "http://" + request_.address + "/onvif/device_service";
        SoapReply reply = timeCall(usual);
        if (reply.envelope)
            return usual;
        const bool answered = reply.reached;
        const HostPort hostPort = splitHostPort(request_.address);
        if (isIpv4(hostPort.host)) {
            for (const std::string& xaddr :
                 httpFirst(probeCamera({hostPort.host, discoveryPort()}, std::min(unicastProbeMs, soap_.remainingMs())))) {
                const auto address = repairServiceAddress(xaddr, host_, "/onvif/device_service");
                if (address && timeCall(*address).envelope)
                    return address;
            }
        }
        if (answered) {
            for (const char* path : {"/onvif/services", "/onvif/devices"}) {
                const std::string address = "http://" + request_.address + path;
                if (timeCall(address).envelope)
                    return address;
            }
        }
        return std::nullopt;
    }

    // GetSystemDateAndTime, and the clock offset from it; a camera that
    // wants authentication even here is asked again with the local clock.
    SoapReply timeCall(const std::string& url)
    {
        const std::string body = element(deviceNamespace, "GetSystemDateAndTime", "");
        SoapReply reply = soap_.call(url, deviceNamespace, "GetSystemDateAndTime", body, false);
        if (reply.envelope && !reply.ok()) {
            soap_.setClockOffset(0);
            const SoapReply secured = soap_.call(url, deviceNamespace, "GetSystemDateAndTime", body, true);
            if (secured.ok())
                reply = secured;
        }
        if (reply.ok()) {
            if (const auto clock = cameraClock(reply.body)) {
                soap_.setClockOffset(*clock - static_cast<std::int64_t>(std::time(nullptr)));
                trace("clock offset " + std::to_string(soap_.clockOffset()) + " s");
            }
        }
        return reply;
    }

    bool stopOnWrongLogin(const SoapReply& reply)
    {
        if (reply.wrongLogin()) {
            trace("wrong login: " + reply.subcode + " " + reply.reason);
            stop_ = true;
        }
        return stop_;
    }

    MediaAddresses mediaAddresses(const std::string& device)
    {
        MediaAddresses media;
        const SoapReply services = soap_.call(device, deviceNamespace, "GetServices",
                                              element(deviceNamespace, "GetServices",
                                                      "<IncludeCapability>false</IncludeCapability>"),
                                              true);
        if (stopOnWrongLogin(services))
            return media;
        if (services.ok())
            media = mediaFromServices(services.body);
        if (media.media.empty() && media.media2.empty()) {
            const SoapReply capabilities = soap_.call(device, deviceNamespace, "GetCapabilities",
                                                      element(deviceNamespace, "GetCapabilities",
                                                              "<Category>All</Category>"),
                                                      true);
            if (stopOnWrongLogin(capabilities))
                return media;
            if (capabilities.ok())
                media.media = mediaFromCapabilities(capabilities.body);
        }
        for (std::string* address : {&media.media, &media.media2})
            if (!address->empty())
                *address = repairServiceAddress(*address, host_, "/onvif/media_service").value_or("");
        return media;
    }

    std::optional<std::string> mediaLink(const std::string& url)
    {
        const SoapReply profiles = soap_.call(url, mediaNamespace, "GetProfiles",
                                              element(mediaNamespace, "GetProfiles", ""), true);
        if (stopOnWrongLogin(profiles) || !profiles.ok())
            return std::nullopt;
        for (const std::string& token : profileTokens(profiles.body)) {
            const std::string setup = std::string("<StreamSetup><Stream xmlns=\"") + schemaNamespace
                + "\">RTP-Unicast</Stream><Transport xmlns=\"" + schemaNamespace + "\"><Protocol>RTSP</Protocol>"
                + "</Transport></StreamSetup><ProfileToken>" + escapeXml(token) + "</ProfileToken>";
            const SoapReply uri = soap_.call(url, mediaNamespace, "GetStreamUri",
                                             element(mediaNamespace, "GetStreamUri", setup), true);
            if (stopOnWrongLogin(uri))
                return std::nullopt;
            if (!uri.ok())
                continue;
            const std::string link = textAt(uri.body, {"MediaUri", "Uri"}).value_or("");
            if (!link.empty())
                return repairStreamUri(link, host_);
        }
        return std::nullopt;
    }

    std::optional<std::string> media2Link(const std::string& url)
    {
        const SoapReply profiles = soap_.call(url, media2Namespace, "GetProfiles",
                                              element(media2Namespace, "GetProfiles", ""), true);
        if (stopOnWrongLogin(profiles) || !profiles.ok())
            return std::nullopt;
        for (const std::string& token : profileTokens(profiles.body)) {
            for (const char* protocol : {"RTSP", "RtspUnicast"}) {
                const std::string inner = std::string("<Protocol>") + protocol + "</Protocol><ProfileToken>"
                    + escapeXml(token) + "</ProfileToken>";
                const SoapReply uri = soap_.call(url, media2Namespace, "GetStreamUri",
                                                 element(media2Namespace, "GetStreamUri", inner), true);
                if (stopOnWrongLogin(uri))
                    return std::nullopt;
                if (!uri.ok())
                    continue;
                const auto response = findFirst(uri.body, "GetStreamUriResponse");
                const std::string link = textAt(response ? response->inner : uri.body, {"Uri"}).value_or("");
                if (!link.empty())
                    return repairStreamUri(link, host_);
            }
        }
        return std::nullopt;
    }

    const LinkRequest& request_;
    std::string host_;
    SoapClient soap_;
    bool stop_ = false;
};

} // namespace

std::optional<std::int64_t> cameraClock(const std::string& body)
{
    for (const char* which : {"UTCDateTime", "LocalDateTime"}) {
        const auto stamp = findFirst(body, which);
        if (!stamp)
            continue;
        const auto date = findFirst(stamp->inner, "Date");
        const auto time = findFirst(stamp->inner, "Time");
        if (!date || !time)
            continue;
        const auto seconds = utcSeconds(number(textAt(date->inner, {"Year"})), number(textAt(date->inner, {"Month"})),
                                        number(textAt(date->inner, {"Day"})), number(textAt(time->inner, {"Hour"})),
                                        number(textAt(time->inner, {"Minute"})), number(textAt(time->inner, {"Second"})));
        if (seconds)
            return seconds;
    }
    return std::nullopt;
}

MediaAddresses mediaFromServices(const std::string& body)
{
    MediaAddresses media;
    for (const XmlElement& service : findAll(body, "Service")) {
        const std::string ns = textAt(service.inner, {"Namespace"}).value_or("");
        const std::string xaddr = textAt(service.inner, {"XAddr"}).value_or("");
        if (ns == mediaNamespace && media.media.empty())
            media.media = xaddr;
        else if (ns == media2Namespace && media.media2.empty())
            media.media2 = xaddr;
    }
    return media;
}

std::string mediaFromCapabilities(const std::string& body)
{
    return textAt(body, {"Capabilities", "Media", "XAddr"}).value_or("");
}

std::vector<std::string> profileTokens(const std::string& body)
{
    std::vector<std::pair<std::string, bool>> profiles;
    for (const XmlElement& profile : findAll(body, "Profiles")) {
        const auto token = attribute(profile, "token");
        if (!token || token->empty())
            continue;
        const bool video = findFirst(profile.inner, "VideoEncoderConfiguration").has_value()
            || findFirst(profile.inner, "VideoEncoder").has_value();
        profiles.emplace_back(*token, video);
    }
    std::stable_partition(profiles.begin(), profiles.end(), [](const auto& p) { return p.second; });
    std::vector<std::string> tokens;
    for (const auto& p : profiles)
        tokens.push_back(p.first);
    return tokens;
}

} // namespace onvif

namespace onvif {

std::optional<std::string> getStreamLink(const LinkRequest& request)
{
    if (request.address.empty())
        return std::nullopt;
    return LinkSession(request).run();
}

} // namespace onvif
