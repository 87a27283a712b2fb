#pragma once
// HTTP Digest: the Authorization header that answers a camera's
// WWW-Authenticate challenge (MD5 or SHA-256, with or without qop "auth",
// the opaque value echoed).
#include <optional>
#include <string>

namespace onvif {

// Nothing when the challenge isn't Digest or names another algorithm.
std::optional<std::string> digestAuthorization(const std::string& challenge, const std::string& method,
                                               const std::string& uri, const std::string& login,
                                               const std::string& password, const std::string& clientNonce);

} // namespace onvif
