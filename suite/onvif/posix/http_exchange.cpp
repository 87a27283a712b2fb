// cpp-httplib built with OpenSSL answers Digest itself.
#include "http_exchange.h"

namespace onvif {

httplib::Result postRequest(httplib::Client& client, const std::string& path, const std::string& body,
                            const std::string& contentType, const DigestLogin* digest)
{
    client.enable_server_certificate_verification(false);
    if (digest)
        client.set_digest_auth(digest->login.c_str(), digest->password.c_str());
    return client.Post(path.c_str(), body, contentType.c_str());
}

} // namespace onvif
