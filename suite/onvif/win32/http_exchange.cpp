// cpp-httplib without OpenSSL has no Digest of its own (nor https): a 401
// that asks for Digest gets the request once more with our own answer.
#include "http_exchange.h"

#include "hashes.h"
#include "http_digest.h"

namespace onvif {

httplib::Result postRequest(httplib::Client& client, const std::string& path, const std::string& body,
                            const std::string& contentType, const DigestLogin* digest)
{
    httplib::Result result = client.Post(path.c_str(), body, contentType.c_str());
    if (!digest || !result || result->status != 401)
        return result;
    std::string clientNonce;
    secureRandom(clientNonce, 16);
    const auto authorization =
        digestAuthorization(result->get_header_value("WWW-Authenticate"), "POST", path, digest->login,
                            digest->password, hexText(clientNonce));
    if (!authorization)
        return result;
    const httplib::Headers headers{{"Authorization", *authorization}};
    return client.Post(path.c_str(), headers, body, contentType.c_str());
}

} // namespace onvif
