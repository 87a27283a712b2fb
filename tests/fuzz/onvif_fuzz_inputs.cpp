// What the discovery tool reads from cameras. A WS-Discovery datagram: the
// matches it reads, the ip and name a camera is listed by, and the list of
// found cameras, which holds each endpoint once. A camera's SOAP answer: the
// envelope and fault, the pieces the link call takes from the answers, the
// xml helpers (which never hand out a view past the text) and the addresses
// in it.
#include <set>
#include <string>
#include <string_view>

#include "discovery_messages.h"
#include "fuzz_registry.h"
#include "fuzz_support.h"
#include "onvif_addresses.h"
#include "soap_call.h"
#include "stream_link.h"
#include "xml_tags.h"

namespace vx::fuzz {
namespace {

void readProbeInput(const std::uint8_t* data, std::size_t size)
{
    const std::string input = inputText(data, size);
    onvif::FoundCameras found;
    for (const onvif::ProbeMatch& match : onvif::parseProbeMatches(input)) {
        check(!onvif::chooseIp(match.xaddrs, "192.0.2.7").empty(), "a camera with no ip");
        onvif::cameraName(match.scopes);
        onvif::httpFirst(onvif::splitXAddrs(match.types));
        found.add(match, "192.0.2.7");
        found.add(match, "192.0.2.8");   // the same camera on a second interface
    }
    std::set<std::string> keys;
    for (const onvif::FoundCamera& camera : found.list())
        check(keys.insert(camera.key).second, "a camera listed twice");
    onvif::percentDecode(input);
    onvif::cameraName(input);
}

const FuzzRegistration probe{
    "onvif_probe", readProbeInput,
    {"<d:ProbeMatches>", "</d:ProbeMatches>", "<d:ProbeMatch>", "</d:ProbeMatch>", "<d:XAddrs>", "</d:XAddrs>", "<d:Scopes>", "</d:Scopes>", "<d:Types>", "<a:EndpointReference><a:Address>", "</a:Address></a:EndpointReference>", "onvif://www.onvif.org/name/", "onvif://www.onvif.org/hardware/", "http://169.254.1.1/onvif/device_service", "http://0.0.0.0:80/", "http://[fe80::1]/", "<![CDATA[", "]]>", "&amp;", "&#x41;", "%2", "+", }};


bool inside(std::string_view part, std::string_view whole)
{
    return part.empty() || (part.data() >= whole.data() && part.data() + part.size() <= whole.data() + whole.size());
}

void readAddress(const std::string& text)
{
    const std::optional<onvif::Url> url = onvif::parseUrl(text);
    if (url) {
        const std::optional<onvif::Url> again = onvif::parseUrl(onvif::formatUrl(*url));
        check(again && again->scheme == url->scheme && again->host == url->host && again->port == url->port &&
                  again->path == url->path,
              "an address written out reads differently");
    }
    onvif::repairServiceAddress(text, "192.0.2.7", "/onvif/device_service");
    onvif::repairStreamUri(text, "192.0.2.7");
    onvif::splitHostPort(text);
}

void readReplyInput(const std::uint8_t* data, std::size_t size)
{
    const std::string input = inputText(data, size);
    const std::string_view xml = input;
    for (int status : {200, 400, 401, 500}) {
        const onvif::SoapReply reply = onvif::readReply(status, input);
        check(!(reply.ok() && reply.fault), "a fault read as a good answer");
        reply.wrongLogin();
        reply.aboutAction();
        reply.mustUnderstand();
    }
    for (std::string_view name : {"Envelope", "Body", "Uri", "XAddr", "Profiles"}) {
        for (const onvif::XmlElement& element : onvif::findAll(xml, name)) {
            check(inside(element.inner, xml) && inside(element.attributes, xml) && inside(element.localName, xml),
                  "an element's view lies outside the text");
            onvif::attribute(element, "token");
            onvif::elementText(element.inner);
        }
    }
    const std::optional<std::string> uri = onvif::textAt(xml, {"Envelope", "Body", "GetStreamUriResponse", "MediaUri", "Uri"});
    if (uri)
        readAddress(*uri);
    onvif::cameraClock(input);
    onvif::mediaFromServices(input);
    onvif::mediaFromCapabilities(input);
    onvif::profileTokens(input);
    check(onvif::decodeEntities(onvif::escapeXml(input)) == input, "escaped text doesn't decode back");
    check(inside(onvif::trimBlanks(xml), xml), "trimmed text lies outside the text");
    readAddress(input);
}

const FuzzRegistration reply{
    "onvif_reply", readReplyInput,
    {"<s:Envelope>", "</s:Envelope>", "<s:Body>", "</s:Body>", "<s:Fault>", "<s:Code><s:Value>", "</s:Value>", "<s:Subcode>", "<s:Reason><s:Text>", "ter:NotAuthorized", "<trt:GetStreamUriResponse><trt:MediaUri><tt:Uri>", "</tt:Uri>", "<tt:UTCDateTime>", "<tt:Year>", "<tds:Service>", "<tds:XAddr>", "<trt:Profiles token=\"p1\">", "<tt:VideoEncoderConfiguration>", "/>", "<![CDATA[", "]]>", "<!--", "-->", "&amp;", "&lt;", "&#60;", "&#x3C;", "rtsp://", "http://", "[::1]", ":554", "0.0.0.0", }};

} // namespace
} // namespace vx::fuzz
