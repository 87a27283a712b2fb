#pragma once
// One HTTP POST to a camera. With a login, a 401 that asks for HTTP Digest
// is answered once with the login and password; a camera's self-signed
// certificate is not verified.
#include <httplib.h>

#include <string>

namespace onvif {

struct DigestLogin {
    std::string login;
    std::string password;
};

httplib::Result postRequest(httplib::Client& client, const std::string& path, const std::string& body,
                            const std::string& contentType, const DigestLogin* digest);

} // namespace onvif
