// The pieces of get_rtsp_onvif whose faults the fake cameras would not show
// (they share the digest code) or that only real networks meet: the digests,
// the choice of address and the address repairs.
#include <gtest/gtest.h>

#include "discovery_messages.h"
#include "http_digest.h"
#include "onvif_addresses.h"
#include "stream_link.h"
#include "ws_security.h"

namespace onvif {
namespace {

TEST(OnvifDigest, WsSecurityAndHttpDigestMatchThePublishedExamples)
{
    const auto nonce = base64Decode("LKqI6G/AikKCQrN0zqZFlg==");
    ASSERT_TRUE(nonce);
    EXPECT_EQ(nonce->size(), 16u);
    EXPECT_EQ(passwordDigest(*nonce, "2010-09-16T07:50:45Z", "userpassword"), "tuOSpGlFlIXsozq4HFNeeGeFLEI=");
    EXPECT_EQ(base64Encode(*nonce), "LKqI6G/AikKCQrN0zqZFlg==");
    EXPECT_FALSE(base64Decode("abc"));
    // Created is UTC with a Z, and the token carries it.
    EXPECT_EQ(formatCreated(1284623445), "2010-09-16T07:50:45Z");
    EXPECT_EQ(utcSeconds(2010, 9, 16, 7, 50, 45), 1284623445);
    EXPECT_FALSE(utcSeconds(2010, 13, 1, 0, 0, 0));
    const UsernameToken token = makeUsernameToken("ad<min", "pw", 1284623445);
    const std::string header = securityHeader(token);
    EXPECT_NE(header.find("<wsse:Username>ad&lt;min</wsse:Username>"), std::string::npos);
    EXPECT_NE(header.find("<wsu:Created>2010-09-16T07:50:45Z</wsu:Created>"), std::string::npos);
    EXPECT_EQ(token.passwordDigest, passwordDigest(*base64Decode(token.nonce), token.created, "pw"));

    // HTTP Digest answers the challenge of the RFC's example.
    const auto challenged = digestAuthorization(
        "Digest realm=\"testrealm@host.com\", qop=\"auth,auth-int\", nonce=\"dcd98b7102dd2f0e8b11d0f600bfb0c093\", "
        "opaque=\"5ccc069c403ebaf9f0171e9517f40e41\"",
        "GET", "/dir/index.html", "Mufasa", "Circle Of Life", "0a4f113b");
    EXPECT_EQ(challenged, "Digest username=\"Mufasa\", realm=\"testrealm@host.com\", "
                          "nonce=\"dcd98b7102dd2f0e8b11d0f600bfb0c093\", uri=\"/dir/index.html\", algorithm=MD5, "
                          "qop=auth, nc=00000001, cnonce=\"0a4f113b\", response=\"6629fae49393a05397450978507c4ef1\", "
                          "opaque=\"5ccc069c403ebaf9f0171e9517f40e41\"");
    EXPECT_FALSE(digestAuthorization("Basic realm=\"x\"", "POST", "/", "a", "b", "c"));
}

// The names and the de-duplicated list are seen in the scans against fake
// cameras; which address a camera is listed under needs real networks: the
// source when an XAddr has it, else the first fit one, else the source.
TEST(OnvifAddresses, TheListedAddressAndTheMendedServiceAddressesAndStreamLinks)
{
    const std::vector<std::string> xaddrs = {"http://[fe80::1]/onvif/device_service",
                                             "http://169.254.3.4/onvif/device_service",
                                             "https://192.168.0.9:2020/onvif/device_service"};
    EXPECT_EQ(chooseIp(xaddrs, "192.168.0.77"), "192.168.0.9");
    EXPECT_EQ(chooseIp({"http://10.1.1.1/a", "http://192.168.0.77:8899/a"}, "192.168.0.77"), "192.168.0.77");
    EXPECT_EQ(chooseIp({"http://0.0.0.0/a", "http://127.0.0.1/a", "http://169.254.1.1/a"}, "10.0.0.8"), "10.0.0.8");
    // Another host: ours, with its scheme, port and path.
    EXPECT_EQ(repairServiceAddress("http://192.168.1.64:8080/onvif/Media", "10.0.0.5", "/onvif/media_service"),
              "http://10.0.0.5:8080/onvif/Media");
    EXPECT_EQ(repairServiceAddress("https://127.0.0.1/onvif/media", "10.0.0.5", "/x"), "https://10.0.0.5/onvif/media");
    EXPECT_EQ(repairServiceAddress("http://10.0.0.5", "10.0.0.5", "/onvif/media_service"),
              "http://10.0.0.5/onvif/media_service");
    EXPECT_EQ(repairServiceAddress("http://10.0.0.5:8106:8106/onvif/media", "10.0.0.5", "/x"),
              "http://10.0.0.5:8106/onvif/media");
    EXPECT_EQ(repairServiceAddress("http://[fe80::2]:80/onvif/d", "10.0.0.5", "/x"), "http://10.0.0.5:80/onvif/d");
    EXPECT_FALSE(repairServiceAddress("garbage", "10.0.0.5", "/x"));
    EXPECT_EQ(httpFirst({"https://a/1", "http://b/2", "https://c/3", "HTTP://d/4"}),
              (std::vector<std::string>{"http://b/2", "HTTP://d/4", "https://a/1", "https://c/3"}));
    EXPECT_EQ(splitHostPort("10.0.0.5:8899").port, "8899");
    EXPECT_EQ(splitHostPort("10.0.0.5").host, "10.0.0.5");
    // Stream links on unusable hosts get the camera's.
    EXPECT_EQ(repairStreamUri("rtsp://0.0.0.0:8554/live?a=1", "10.0.0.5"), "rtsp://10.0.0.5:8554/live?a=1");
    EXPECT_EQ(repairStreamUri("rtsp://127.0.0.1/live", "10.0.0.5"), "rtsp://10.0.0.5/live");
    EXPECT_EQ(repairStreamUri("rtsp://u:p@localhost:554/x", "10.0.0.5"), "rtsp://u:p@10.0.0.5:554/x");
    EXPECT_EQ(repairStreamUri("rtsp://192.168.1.64:554/x", "10.0.0.5"), "rtsp://192.168.1.64:554/x");
}

} // namespace
} // namespace onvif
