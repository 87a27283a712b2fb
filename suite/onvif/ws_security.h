#pragma once
// WS-Security UsernameToken with a password digest, and the clock it needs:
// cameras reject a Created time far from their own clock, so requests carry
// the local time moved by the camera's offset.
#include <cstdint>
#include <ctime>
#include <optional>
#include <string>

#include "hashes.h"

namespace onvif {

std::string randomBytes(std::size_t count);

// Base64(SHA-1(nonce + created + password)); `nonce` is the raw bytes.
std::string passwordDigest(const std::string& nonce, const std::string& created, const std::string& password);

// "YYYY-MM-DDThh:mm:ssZ" for seconds since the epoch, in UTC.
std::string formatCreated(std::int64_t epochSeconds);
// Seconds since the epoch for a date and time taken as UTC; nothing for
// values out of their ranges.
std::optional<std::int64_t> utcSeconds(int year, int month, int day, int hour, int minute, int second);

struct UsernameToken {
    std::string username;
    std::string passwordDigest;   // Base64
    std::string nonce;            // Base64
    std::string created;
};

UsernameToken makeUsernameToken(const std::string& username, const std::string& password,
                                std::int64_t createdEpochSeconds);
// The wsse:Security header element for the token.
std::string securityHeader(const UsernameToken& token);

} // namespace onvif
