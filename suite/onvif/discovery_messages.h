#pragma once
// The WS-Discovery texts: the probe we send and the matches cameras send
// back, with the rules for the ip and the name a found camera is listed by.
#include <string>
#include <string_view>
#include <vector>

namespace onvif {

enum class ProbeType { networkVideoTransmitter, device };

std::string newMessageId();   // "urn:uuid:" and a random version 4 UUID
std::string probeMessage(const std::string& messageId, ProbeType type);

struct ProbeMatch {
    std::string endpoint;   // EndpointReference/Address
    std::string types;
    std::string scopes;
    std::vector<std::string> xaddrs;
};

// The matches of a ProbeMatches message; nothing for a Hello, a probe, or
// anything else.
std::vector<ProbeMatch> parseProbeMatches(std::string_view message);

// The IPv4 host of an XAddr equal to the source address; else the first
// IPv4 XAddr host that is not link-local, 0.0.0.0 or loopback; else the
// source address.
std::string chooseIp(const std::vector<std::string>& xaddrs, const std::string& sourceAddress);
// The first ".../name/..." scope, percent-decoded ('+' a blank); else the
// ".../hardware/..." scope; else empty.
std::string cameraName(std::string_view scopes);
std::string percentDecode(std::string_view text);

struct FoundCamera {
    std::string key;   // endpoint address, or the ip when there is none
    std::string ip;
    std::string name;
};

// One entry per endpoint, in the order of first answers: a camera answers
// once per interface and once per probe type.
class FoundCameras {
public:
    void add(const ProbeMatch& match, const std::string& sourceAddress);
    const std::vector<FoundCamera>& list() const { return cameras_; }

private:
    std::vector<FoundCamera> cameras_;
};

} // namespace onvif
