// A WS-Discovery datagram as the discovery tool receives it: the matches it
// reads, the ip and name a camera is listed by, and the list of found
// cameras, which holds each endpoint once.
#include <set>
#include <string>

#include "discovery_messages.h"
#include "fuzz_registry.h"
#include "fuzz_support.h"
#include "onvif_addresses.h"

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

const FuzzRegistration registered{
    "onvif_probe", readProbeInput,
    {"<d:ProbeMatches>", "</d:ProbeMatches>", "<d:ProbeMatch>", "</d:ProbeMatch>", "<d:XAddrs>", "</d:XAddrs>", "<d:Scopes>", "</d:Scopes>", "<d:Types>", "<a:EndpointReference><a:Address>", "</a:Address></a:EndpointReference>", "onvif://www.onvif.org/name/", "onvif://www.onvif.org/hardware/", "http://169.254.1.1/onvif/device_service", "http://0.0.0.0:80/", "http://[fe80::1]/", "<![CDATA[", "]]>", "&amp;", "&#x41;", "%2", "+", }};

} // namespace
} // namespace vx::fuzz
