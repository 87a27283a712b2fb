// The pieces of get_rtsp_onvif that need no network: the digest, the XML
// reader on answers as cameras write them, the discovery rules and the
// address repairs.
#include <gtest/gtest.h>

#include "discovery_messages.h"
#include "http_digest.h"
#include "onvif_addresses.h"
#include "soap_call.h"
#include "stream_link.h"
#include "tool_output.h"
#include "ws_security.h"
#include "xml_tags.h"

namespace onvif {
namespace {

TEST(OnvifDigest, MatchesThePublishedTestVector)
{
    const auto nonce = base64Decode("LKqI6G/AikKCQrN0zqZFlg==");
    ASSERT_TRUE(nonce);
    EXPECT_EQ(nonce->size(), 16u);
    EXPECT_EQ(passwordDigest(*nonce, "2010-09-16T07:50:45Z", "userpassword"), "tuOSpGlFlIXsozq4HFNeeGeFLEI=");
    EXPECT_EQ(base64Encode(*nonce), "LKqI6G/AikKCQrN0zqZFlg==");
    EXPECT_FALSE(base64Decode("abc"));
}

TEST(OnvifDigest, CreatedIsUtcWithZAndTheTokenCarriesIt)
{
    EXPECT_EQ(formatCreated(1284623445), "2010-09-16T07:50:45Z");
    EXPECT_EQ(utcSeconds(2010, 9, 16, 7, 50, 45), 1284623445);
    EXPECT_FALSE(utcSeconds(2010, 13, 1, 0, 0, 0));
    const UsernameToken token = makeUsernameToken("ad<min", "pw", 1284623445);
    const std::string header = securityHeader(token);
    EXPECT_NE(header.find("<wsse:Username>ad&lt;min</wsse:Username>"), std::string::npos);
    EXPECT_NE(header.find("<wsu:Created>2010-09-16T07:50:45Z</wsu:Created>"), std::string::npos);
    EXPECT_EQ(token.passwordDigest, passwordDigest(*base64Decode(token.nonce), token.created, "pw"));
}

TEST(OnvifDigest, HttpDigestAnswersTheChallengeOfTheRfcExample)
{
    const auto header = digestAuthorization(
        "Digest realm=\"testrealm@host.com\", qop=\"auth,auth-int\", nonce=\"dcd98b7102dd2f0e8b11d0f600bfb0c093\", "
        "opaque=\"5ccc069c403ebaf9f0171e9517f40e41\"",
        "GET", "/dir/index.html", "Mufasa", "Circle Of Life", "0a4f113b");
    EXPECT_EQ(header, "Digest username=\"Mufasa\", realm=\"testrealm@host.com\", "
                      "nonce=\"dcd98b7102dd2f0e8b11d0f600bfb0c093\", uri=\"/dir/index.html\", algorithm=MD5, qop=auth, "
                      "nc=00000001, cnonce=\"0a4f113b\", response=\"6629fae49393a05397450978507c4ef1\", "
                      "opaque=\"5ccc069c403ebaf9f0171e9517f40e41\"");
    EXPECT_FALSE(digestAuthorization("Basic realm=\"x\"", "POST", "/", "a", "b", "c"));
}

TEST(OnvifXml, FindsElementsWhateverTheirPrefix)
{
    const std::string answer =
        "<?xml version=\"1.0\"?><!-- <tt:Uri>comment</tt:Uri> --><env:Envelope xmlns:env=\"e\"><env:Body>"
        "<trt:GetStreamUriResponse><trt:MediaUri><tt:Uri>\n  rtsp://10.0.0.5/a?x=1&amp;y=2  </tt:Uri></trt:MediaUri>"
        "</trt:GetStreamUriResponse><Uri><![CDATA[rtsp://<raw>]]></Uri></env:Body></env:Envelope>";
    EXPECT_EQ(textAt(answer, {"MediaUri", "Uri"}), "rtsp://10.0.0.5/a?x=1&y=2");
    ASSERT_EQ(findAll(answer, "Uri").size(), 2u);
    EXPECT_EQ(elementText(findAll(answer, "Uri")[1].inner), "rtsp://<raw>");
    EXPECT_FALSE(textAt(answer, {"Missing"}));
}

TEST(OnvifXml, NestedSameNamesAttributesAndBrokenText)
{
    const std::string xml = "<a:P token='one' fixed=\"true\"><a:P token=\"in&quot;ner\"/><x>1</x></a:P>"
                            "<P token=\"two\">unclosed";
    const auto all = findAll(xml, "P");
    ASSERT_EQ(all.size(), 2u);   // the unclosed one is left out
    EXPECT_EQ(attribute(all[0], "token"), "one");
    EXPECT_EQ(attribute(all[1], "token"), "in\"ner");
    EXPECT_EQ(textAt(xml, {"P", "x"}), "1");
    // Cut anywhere, the reader ends without a fault.
    for (std::size_t cut = 0; cut < xml.size(); ++cut)
        (void)findAll(xml.substr(0, cut), "P");
    EXPECT_EQ(decodeEntities("&#1055;&#x440;&bogus;&"), "\xD0\x9F\xD1\x80&bogus;&");
}

TEST(OnvifDiscovery, ProbeNamesOneTypeWithItsPrefixesOnTypes)
{
    const std::string id = newMessageId();
    EXPECT_EQ(id.size(), 45u);
    EXPECT_EQ(id[23], '4');
    const std::string nvt = probeMessage(id, ProbeType::networkVideoTransmitter);
    EXPECT_NE(nvt.find("<d:Types xmlns:d=\"http://schemas.xmlsoap.org/ws/2005/04/discovery\" "
                       "xmlns:dn=\"http://www.onvif.org/ver10/network/wsdl\">dn:NetworkVideoTransmitter</d:Types>"),
              std::string::npos);
    EXPECT_NE(nvt.find("<a:MessageID>" + id + "</a:MessageID>"), std::string::npos);
    const std::string device = probeMessage(id, ProbeType::device);
    EXPECT_NE(device.find(">tds:Device</d:Types>"), std::string::npos);
    EXPECT_EQ(device.find("NetworkVideoTransmitter"), std::string::npos);
    EXPECT_TRUE(parseProbeMatches(nvt).empty());   // our own probe, looped back
}

TEST(OnvifDiscovery, MatchesScopesAndIp)
{
    const std::string message =
        "<e:Envelope><e:Body><d:ProbeMatches><d:ProbeMatch><w:EndpointReference><w:Address>urn:uuid:1"
        "</w:Address></w:EndpointReference><d:Types>dn:NetworkVideoTransmitter</d:Types><d:Scopes>"
        "onvif://www.onvif.org/hardware/HW-1 onvif://www.onvif.org/name/%D0%92%D1%8A%D0%B5%D0%B7%D0%B4+2"
        "</d:Scopes><d:XAddrs>http://[fe80::1]/onvif/device_service http://169.254.3.4/onvif/device_service "
        "https://192.168.0.9:2020/onvif/device_service</d:XAddrs></d:ProbeMatch></d:ProbeMatches></e:Body>"
        "</e:Envelope>";
    const auto matches = parseProbeMatches(message);
    ASSERT_EQ(matches.size(), 1u);
    EXPECT_EQ(matches[0].endpoint, "urn:uuid:1");
    EXPECT_EQ(matches[0].xaddrs.size(), 3u);
    EXPECT_EQ(cameraName(matches[0].scopes), "\xD0\x92\xD1\x8A\xD0\xB5\xD0\xB7\xD0\xB4 2");
    EXPECT_EQ(cameraName("onvif://www.onvif.org/hardware/IPC%2DX"), "IPC-X");
    EXPECT_EQ(cameraName("onvif://www.onvif.org/location/x"), "");
    EXPECT_TRUE(parseProbeMatches("<e:Envelope><e:Body><d:Hello/></e:Body></e:Envelope>").empty());

    // The source when an XAddr has it; else the first fit one; else the source.
    EXPECT_EQ(chooseIp(matches[0].xaddrs, "192.168.0.77"), "192.168.0.9");
    EXPECT_EQ(chooseIp({"http://10.1.1.1/a", "http://192.168.0.77:8899/a"}, "192.168.0.77"), "192.168.0.77");
    EXPECT_EQ(chooseIp({"http://0.0.0.0/a", "http://127.0.0.1/a", "http://169.254.1.1/a"}, "10.0.0.8"), "10.0.0.8");
}

TEST(OnvifDiscovery, OneEntryPerEndpoint)
{
    FoundCameras found;
    found.add({"urn:a", "", "onvif://www.onvif.org/name/A", {"http://10.0.0.1/x"}}, "10.0.0.1");
    found.add({"urn:a", "", "onvif://www.onvif.org/name/A", {"http://10.0.0.1/x"}}, "10.0.0.1");
    found.add({"", "", "", {"http://10.0.0.2/x"}}, "10.0.0.2");
    found.add({"", "", "", {"http://10.0.0.2/y"}}, "10.0.0.2");
    found.add({"urn:b", "", "", {}}, "10.0.0.1");
    ASSERT_EQ(found.list().size(), 3u);
    EXPECT_EQ(scanJson(found.list()),
              R"({"cameras":[{"ip":"10.0.0.1","name":"A"},{"ip":"10.0.0.2","name":""},{"ip":"10.0.0.1","name":""}]})");
    EXPECT_EQ(scanJson({{"k", "1.2.3.4", "a\"b\xff"}}), "{\"cameras\":[{\"ip\":\"1.2.3.4\",\"name\":\"a\\\"b\xEF\xBF\xBD\"}]}");
    EXPECT_EQ(rtspJson(std::nullopt), "{}");
    EXPECT_EQ(rtspJson("rtsp://x/a"), R"({"rtsp":"rtsp://x/a"})");
}

TEST(OnvifAddresses, ServiceAddressesAreMended)
{
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
}

TEST(OnvifAddresses, StreamLinksOnUnusableHostsGetTheCamera)
{
    EXPECT_EQ(repairStreamUri("rtsp://0.0.0.0:8554/live?a=1", "10.0.0.5"), "rtsp://10.0.0.5:8554/live?a=1");
    EXPECT_EQ(repairStreamUri("rtsp://127.0.0.1/live", "10.0.0.5"), "rtsp://10.0.0.5/live");
    EXPECT_EQ(repairStreamUri("rtsp://u:p@localhost:554/x", "10.0.0.5"), "rtsp://u:p@10.0.0.5:554/x");
    EXPECT_EQ(repairStreamUri("rtsp://192.168.1.64:554/x", "10.0.0.5"), "rtsp://192.168.1.64:554/x");
}

TEST(OnvifAnswers, ClockServicesProfilesAndFaults)
{
    const std::string time =
        "<s:Body><tds:SystemDateAndTime><tt:LocalDateTime><tt:Time><tt:Hour>1</tt:Hour><tt:Minute>0</tt:Minute>"
        "<tt:Second>0</tt:Second></tt:Time><tt:Date><tt:Year>2020</tt:Year><tt:Month>1</tt:Month><tt:Day>1</tt:Day>"
        "</tt:Date></tt:LocalDateTime><tt:UTCDateTime><tt:Time><tt:Hour>0</tt:Hour><tt:Minute>0</tt:Minute>"
        "<tt:Second>0</tt:Second></tt:Time><tt:Date><tt:Year>2020</tt:Year><tt:Month>1</tt:Month><tt:Day>1</tt:Day>"
        "</tt:Date></tt:UTCDateTime></tds:SystemDateAndTime></s:Body>";
    EXPECT_EQ(cameraClock(time), 1577836800);
    EXPECT_FALSE(cameraClock("<tt:UTCDateTime><tt:Date><tt:Year>x</tt:Year></tt:Date></tt:UTCDateTime>"));

    const auto media = mediaFromServices(
        "<tds:Service><tds:Namespace>http://www.onvif.org/ver20/media/wsdl</tds:Namespace><tds:XAddr>http://a/m2"
        "</tds:XAddr></tds:Service><tds:Service><tds:Namespace>http://www.onvif.org/ver10/media/wsdl"
        "</tds:Namespace><tds:XAddr>http://a/m1</tds:XAddr></tds:Service>");
    EXPECT_EQ(media.media, "http://a/m1");
    EXPECT_EQ(media.media2, "http://a/m2");
    EXPECT_EQ(mediaFromCapabilities("<Capabilities><Device><XAddr>d</XAddr></Device><Media><XAddr>m</XAddr>"
                                    "</Media></Capabilities>"),
              "m");
    EXPECT_EQ(profileTokens("<Profiles token=\"a\"/><Profiles token=\"b\"><VideoEncoderConfiguration/></Profiles>"
                            "<Profiles/><Profiles token=\"c\"><x><VideoEncoder/></x></Profiles>"),
              (std::vector<std::string>{"b", "c", "a"}));

    const SoapReply fault = readReply(
        500, "<e:Envelope><e:Body><e:Fault><e:Code><e:Value>e:Sender</e:Value><e:Subcode><e:Value>ter:NotAuthorized"
             "</e:Value></e:Subcode></e:Code><e:Reason><e:Text>no</e:Text></e:Reason></e:Fault></e:Body></e:Envelope>");
    EXPECT_TRUE(fault.envelope && fault.fault);
    EXPECT_EQ(fault.code, "e:Sender");
    EXPECT_TRUE(fault.wrongLogin());
    EXPECT_FALSE(fault.mustUnderstand());
    EXPECT_TRUE(readReply(400, "<Envelope><Body><Fault><Code><Value>s:MustUnderstand</Value></Code></Fault></Body>"
                               "</Envelope>")
                    .mustUnderstand());
    EXPECT_FALSE(readReply(200, "<html>not soap</html>").envelope);
}

} // namespace
} // namespace onvif
