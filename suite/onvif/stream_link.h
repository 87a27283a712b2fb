#pragma once
// The link call: from the operator's address and credentials to the
// camera's RTSP link, through the device service, the clock, the service
// list and Media or Media2.
#include <optional>
#include <string>
#include <vector>

#include "soap_call.h"

namespace onvif {

struct LinkRequest {
    std::string address;   // "IP" or "IP:PORT"
    std::string login;
    std::string password;
    Clock::time_point deadline;
};

std::optional<std::string> getStreamLink(const LinkRequest& request);

// Pieces of the answers, apart for the tests.
// The camera's clock from a GetSystemDateAndTime answer: UTCDateTime, else
// LocalDateTime; seconds since the epoch.
std::optional<std::int64_t> cameraClock(const std::string& body);
struct MediaAddresses {
    std::string media;    // ver10
    std::string media2;   // ver20
};
MediaAddresses mediaFromServices(const std::string& body);
std::string mediaFromCapabilities(const std::string& body);
// Profile tokens in order, those with a video encoder first.
std::vector<std::string> profileTokens(const std::string& body);

} // namespace onvif
