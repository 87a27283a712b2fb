#include "fake_camera.h"

#include <httplib.h>

#include <chrono>
#include <cstdio>
#include <ctime>
#include <map>
#include <regex>

#include "hashes.h"
#include "ws_security.h"
#include "xml_tags.h"

namespace vx::test {

namespace {

const char* const realm = "fake-camera";
const char* const digestNonce = "a1b2c3d4e5f60718293a4b5c6d7e8f90";
const char* const opaque = "0paque";

std::string md5Hex(const std::string& text) { return onvif::hexText(onvif::hashBytes(onvif::HashKind::md5, text)); }

// The fields of an Authorization header "Digest a=\"x\", b=y, ...".
std::map<std::string, std::string> digestFields(const std::string& text)
{
    std::map<std::string, std::string> fields;
    if (text.rfind("Digest ", 0) != 0)
        return fields;
    static const std::regex field(R"re((\w+)=(?:"([^"]*)"|([^,\s]*)))re");
    for (std::sregex_iterator it(text.begin() + 7, text.end(), field), end; it != end; ++it)
        fields[(*it)[1]] = (*it)[2].matched ? (*it)[2].str() : (*it)[3].str();
    return fields;
}

std::string envelope(const std::string& body)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>"
           "<SOAP-ENV:Envelope xmlns:SOAP-ENV=\"http://www.w3.org/2003/05/soap-envelope\" "
           "xmlns:tt=\"http://www.onvif.org/ver10/schema\" xmlns:tds=\"http://www.onvif.org/ver10/device/wsdl\" "
           "xmlns:trt=\"http://www.onvif.org/ver10/media/wsdl\" xmlns:tr2=\"http://www.onvif.org/ver20/media/wsdl\" "
           "xmlns:ter=\"http://www.onvif.org/ver10/error\">"
           "<SOAP-ENV:Header/><SOAP-ENV:Body>"
        + body + "</SOAP-ENV:Body></SOAP-ENV:Envelope>";
}

std::string fault(const std::string& code, const std::string& subcode, const std::string& reason)
{
    return envelope("<SOAP-ENV:Fault><SOAP-ENV:Code><SOAP-ENV:Value>" + code
                    + "</SOAP-ENV:Value><SOAP-ENV:Subcode><SOAP-ENV:Value>" + subcode
                    + "</SOAP-ENV:Value></SOAP-ENV:Subcode></SOAP-ENV:Code><SOAP-ENV:Reason>"
                      "<SOAP-ENV:Text xml:lang=\"en\">"
                    + reason + "</SOAP-ENV:Text></SOAP-ENV:Reason></SOAP-ENV:Fault>");
}

std::string localName(std::string_view qualified)
{
    const std::size_t colon = qualified.rfind(':');
    return std::string(colon == std::string_view::npos ? qualified : qualified.substr(colon + 1));
}

} // namespace

FakeCamera::FakeCamera(CameraScenario scenario) : scenario_(std::move(scenario)), server_(std::make_unique<httplib::Server>())
{
    server_->Post(R"(/.*)", [this](const httplib::Request& request, httplib::Response& response) {
        int status = 200;
        std::string challenge;
        const std::string body = answer(request.path, request.get_header_value("Content-Type"), request.body,
                                        request.get_header_value("Authorization"), status, challenge);
        if (scenario_.answerDelayMs > 0)
            std::this_thread::sleep_for(std::chrono::milliseconds(scenario_.answerDelayMs));
        response.status = status;
        if (!challenge.empty())
            response.set_header("WWW-Authenticate", challenge);
        response.set_content(body, "application/soap+xml; charset=utf-8");
    });
    const int port = server_->bind_to_any_port(scenario_.host.c_str());
    if (port <= 0)
        return;
    httpPort_ = static_cast<std::uint16_t>(port);
    httpThread_ = std::thread([this] { server_->listen_after_bind(); });

    udpSocket_ = std::make_unique<onvif::UdpSocket>();
    if (!udpSocket_->valid() || !udpSocket_->bind({scenario_.host, scenario_.discoveryPort}))
        return;
    discoveryPort_ = udpSocket_->localPort();
    if (discoveryPort_ == 0)
        return;
    udpThread_ = std::thread([this] { serveDiscovery(); });
}

FakeCamera::~FakeCamera()
{
    stopping_ = true;
    server_->stop();
    if (httpThread_.joinable())
        httpThread_.join();
    if (udpThread_.joinable())
        udpThread_.join();
}

std::vector<std::string> FakeCamera::operations() const
{
    std::lock_guard lock(mutex_);
    return operations_;
}

void FakeCamera::serveDiscovery()
{
    std::string buffer(65536, '\0');
    while (!stopping_) {
        if (onvif::waitReadable({udpSocket_.get()}, 50).empty())
            continue;
        const auto received = udpSocket_->receive();
        if (!received)
            continue;
        const std::string_view datagram(received->bytes);
        // Answers only go back where the probe came from: loopback.
        if (!received->from.host.starts_with("127."))
            continue;
        const auto probe = onvif::findFirst(datagram, "Probe");
        if (!probe)
            continue;
        ++probes_;
        const std::string types = onvif::textAt(probe->inner, {"Types"}).value_or("");
        if (types.find("NetworkVideoTransmitter") == std::string::npos && types.find("Device") == std::string::npos)
            continue;
        const std::string messageId = onvif::textAt(datagram, {"MessageID"}).value_or("");
        const std::string xaddrs = "http://[fe80::1]/onvif/device_service http://169.254.10.20/onvif/device_service "
                                   "http://" + scenario_.host + ":" + std::to_string(httpPort_) + scenario_.devicePath;
        const std::string hello =
            "<?xml version=\"1.0\"?><e:Envelope xmlns:e=\"http://www.w3.org/2003/05/soap-envelope\" "
            "xmlns:d=\"http://schemas.xmlsoap.org/ws/2005/04/discovery\"><e:Body><d:Hello><d:XAddrs>http://"
            "127.0.0.2/x</d:XAddrs></d:Hello></e:Body></e:Envelope>";
        const std::string broken = "<?xml version=\"1.0\"?><e:Envelope><e:Body><d:ProbeMatches><d:ProbeMatch>";
        const std::string matches =
            "<?xml version=\"1.0\" encoding=\"UTF-8\"?>"
            "<SOAP-ENV:Envelope xmlns:SOAP-ENV=\"http://www.w3.org/2003/05/soap-envelope\" "
            "xmlns:wsa=\"http://schemas.xmlsoap.org/ws/2004/08/addressing\" "
            "xmlns:wsdd=\"http://schemas.xmlsoap.org/ws/2005/04/discovery\" "
            "xmlns:dn=\"http://www.onvif.org/ver10/network/wsdl\"><SOAP-ENV:Header>"
            "<wsa:MessageID>urn:uuid:0000</wsa:MessageID><wsa:RelatesTo>"
            + messageId
            + "</wsa:RelatesTo><wsa:Action>http://schemas.xmlsoap.org/ws/2005/04/discovery/ProbeMatches</wsa:Action>"
              "</SOAP-ENV:Header><SOAP-ENV:Body><wsdd:ProbeMatches><wsdd:ProbeMatch>"
              "<wsa:EndpointReference><wsa:Address>"
            + scenario_.endpoint + "</wsa:Address></wsa:EndpointReference><wsdd:Types>dn:NetworkVideoTransmitter"
            + "</wsdd:Types><wsdd:Scopes>" + scenario_.scopes + "</wsdd:Scopes><wsdd:XAddrs>" + xaddrs
            + "</wsdd:XAddrs><wsdd:MetadataVersion>1</wsdd:MetadataVersion></wsdd:ProbeMatch></wsdd:ProbeMatches>"
              "</SOAP-ENV:Body></SOAP-ENV:Envelope>";
        if (scenario_.answerDelayMs > 0)
            std::this_thread::sleep_for(std::chrono::milliseconds(scenario_.answerDelayMs));
        // Noise first, then the same match twice, as cameras do.
        for (const std::string* text : {&hello, &broken, &matches, &matches})
            udpSocket_->sendTo(received->from, *text);
    }
}

std::string FakeCamera::answer(const std::string& path, const std::string& contentType, const std::string& body,
                               const std::string& authorization, int& status, std::string& challenge)
{
    const CameraScenario& s = scenario_;
    const auto soapBody = onvif::findFirst(body, "Body");
    std::string operation;
    if (soapBody) {
        const std::string_view inner = onvif::trimBlanks(soapBody->inner);
        if (inner.starts_with('<')) {
            const std::size_t end = inner.find_first_of(" />");
            operation = localName(inner.substr(1, end == std::string_view::npos ? inner.size() - 1 : end - 1));
        }
    }
    const bool onMedia = path == "/onvif/media_service";
    const bool onMedia2 = path == "/onvif/media2_service";
    {
        std::lock_guard lock(mutex_);
        operations_.push_back(operation + (onMedia ? "(media)" : onMedia2 ? "(media2)" : ""));
    }
    if (path != s.devicePath && !(onMedia && s.media) && !onMedia2) {
        status = 404;
        return "not here";
    }
    if (s.emptyBodyWithAction && contentType.find("action=") != std::string::npos)
        return {};
    auto reply = [&](const std::string& text) {
        return s.brokenXml ? text.substr(0, text.size() / 2) : text;
    };

    // Authentication: a UsernameToken with the right digest, created near
    // the camera's clock; or HTTP Digest.
    const auto security = onvif::findFirst(body, "Security");
    if (security && s.refuseSecurityHeader) {
        status = 400;
        return reply(fault("SOAP-ENV:MustUnderstand", "", "Security header not understood"));
    }
    const std::int64_t cameraNow = static_cast<std::int64_t>(std::time(nullptr)) + s.clockOffset;
    bool authorised = false;
    if (security && s.wsSecurity) {
        const std::string user = onvif::textAt(security->inner, {"Username"}).value_or("");
        const std::string digest = onvif::textAt(security->inner, {"Password"}).value_or("");
        const auto nonce = onvif::base64Decode(onvif::textAt(security->inner, {"Nonce"}).value_or(""));
        const std::string created = onvif::textAt(security->inner, {"Created"}).value_or("");
        int y = 0, mo = 0, d = 0, h = 0, mi = 0, sec = 0;
        if (nonce && std::sscanf(created.c_str(), "%d-%d-%dT%d:%d:%dZ", &y, &mo, &d, &h, &mi, &sec) == 6) {
            const auto when = onvif::utcSeconds(y, mo, d, h, mi, sec);
            authorised = user == s.login && digest == onvif::passwordDigest(*nonce, created, s.password) && when
                && std::llabs(*when - cameraNow) <= 60;
        }
    }
    if (!authorised && s.digest) {
        auto fields = digestFields(authorization);
        if (!fields.empty() && fields["username"] == s.login && fields["opaque"] == opaque
            && fields["nonce"] == digestNonce) {
            const std::string ha1 = md5Hex(s.login + ":" + realm + ":" + s.password);
            const std::string ha2 = md5Hex("POST:" + fields["uri"]);
            authorised = fields["response"]
                == md5Hex(ha1 + ":" + digestNonce + ":" + fields["nc"] + ":" + fields["cnonce"] + ":" + fields["qop"]
                          + ":" + ha2);
        }
    }
    const bool needsAuth = operation != "GetSystemDateAndTime" || s.authForTime;
    if (needsAuth && !authorised) {
        if (s.digest) {
            status = 401;
            challenge = std::string("Digest realm=\"") + realm + "\", qop=\"auth\", nonce=\"" + digestNonce
                + "\", opaque=\"" + opaque + "\", algorithm=MD5";
            return {};
        }
        status = 400;
        return reply(fault("SOAP-ENV:Sender", "ter:NotAuthorized", "Sender not Authorized"));
    }

    const std::string base = "http://127.0.0.2:" + std::to_string(httpPort_);
    if (operation == "GetSystemDateAndTime") {
        using namespace std::chrono;
        const sys_seconds t{seconds(cameraNow)};
        const year_month_day date{floor<days>(t)};
        const hh_mm_ss time{t - floor<days>(t)};
        const auto tag = [](const std::string& name, auto value) {
            return "<tt:" + name + ">" + std::to_string(static_cast<int>(value)) + "</tt:" + name + ">";
        };
        const std::string stamp = "<tt:UTCDateTime><tt:Time>" + tag("Hour", time.hours().count())
            + tag("Minute", time.minutes().count()) + tag("Second", time.seconds().count()) + "</tt:Time><tt:Date>"
            + tag("Year", static_cast<int>(date.year())) + tag("Month", static_cast<unsigned>(date.month()))
            + tag("Day", static_cast<unsigned>(date.day())) + "</tt:Date></tt:UTCDateTime>";
        return reply(envelope("<tds:GetSystemDateAndTimeResponse><tds:SystemDateAndTime>"
                              "<tt:DateTimeType>NTP</tt:DateTimeType>"
                              + stamp + "</tds:SystemDateAndTime></tds:GetSystemDateAndTimeResponse>"));
    }
    if (operation == "GetServices") {
        if (s.servicesFault)
            return status = 400, reply(fault("SOAP-ENV:Receiver", "ter:ActionNotSupported", "Optional Action Not Implemented"));
        std::string list = "<tds:Service><tds:Namespace>http://www.onvif.org/ver10/device/wsdl</tds:Namespace>"
                           "<tds:XAddr>" + base + s.devicePath + "</tds:XAddr></tds:Service>";
        if (s.media)
            list += "<tds:Service><tds:Namespace>http://www.onvif.org/ver10/media/wsdl</tds:Namespace><tds:XAddr>"
                + base + "/onvif/media_service</tds:XAddr><tds:Version><tt:Major>2</tt:Major></tds:Version>"
                  "</tds:Service>";
        list += "<tds:Service><tds:Namespace>http://www.onvif.org/ver20/media/wsdl</tds:Namespace><tds:XAddr>"
            + base + "/onvif/media2_service</tds:XAddr></tds:Service>";
        return reply(envelope("<tds:GetServicesResponse>" + list + "</tds:GetServicesResponse>"));
    }
    if (operation == "GetCapabilities") {
        std::string media = s.media ? "<tt:Media><tt:XAddr>" + base + "/onvif/media_service</tt:XAddr></tt:Media>" : "";
        return reply(envelope("<tds:GetCapabilitiesResponse><tds:Capabilities><tt:Device><tt:XAddr>" + base
                              + s.devicePath + "</tt:XAddr></tt:Device>" + media
                              + "</tds:Capabilities></tds:GetCapabilitiesResponse>"));
    }
    if (operation == "GetProfiles" && onMedia)
        return reply(envelope("<trt:GetProfilesResponse>"
                              "<trt:Profiles token=\"audio_only\" fixed=\"true\"><tt:Name>audio</tt:Name></trt:Profiles>"
                              "<trt:Profiles token=\"main&amp;1\" fixed=\"true\"><tt:Name>main</tt:Name>"
                              "<tt:VideoEncoderConfiguration token=\"v1\"/></trt:Profiles>"
                              "<trt:Profiles token=\"sub\"><tt:Name>sub</tt:Name>"
                              "<tt:VideoEncoderConfiguration token=\"v2\"></tt:VideoEncoderConfiguration></trt:Profiles>"
                              "</trt:GetProfilesResponse>"));
    if (operation == "GetProfiles" && onMedia2)
        return reply(envelope("<tr2:GetProfilesResponse><tr2:Profiles token=\"m2main\" fixed=\"true\">"
                              "<tr2:Name>main</tr2:Name></tr2:Profiles><tr2:Profiles token=\"m2sub\">"
                              "<tr2:Name>sub</tr2:Name></tr2:Profiles></tr2:GetProfilesResponse>"));
    if (operation == "GetStreamUri") {
        const std::string token = onvif::textAt(body, {"ProfileToken"}).value_or("");
        const bool first = onMedia ? token == "main&1" : token == "m2main";
        if (s.faultFirstProfile && first)
            return status = 500, reply(fault("SOAP-ENV:Receiver", "ter:NoProfile", "Profile unavailable"));
        const std::string uri = onvif::escapeXml(s.streamUri + (onMedia ? "&profile=" : "&p2=") + token);
        if (onMedia)
            return reply(envelope("<trt:GetStreamUriResponse><trt:MediaUri><tt:Uri>" + uri
                                  + "</tt:Uri><tt:InvalidAfterConnect>false</tt:InvalidAfterConnect></trt:MediaUri>"
                                    "</trt:GetStreamUriResponse>"));
        const std::string protocol = onvif::textAt(body, {"Protocol"}).value_or("");
        if (protocol != "RtspUnicast")
            return status = 400, reply(fault("SOAP-ENV:Sender", "ter:InvalidArgVal", "Protocol not supported"));
        return reply(envelope("<tr2:GetStreamUriResponse><tr2:Uri>" + uri + "</tr2:Uri></tr2:GetStreamUriResponse>"));
    }
    status = 400;
    return reply(fault("SOAP-ENV:Receiver", "ter:ActionNotSupported", "Unknown action"));
}

} // namespace vx::test
