#include "soap_call.h"

#include <httplib.h>

#include <algorithm>
#include <cctype>
#include <ctime>

#include "http_exchange.h"
#include "onvif_addresses.h"
#include "trace.h"
#include "ws_security.h"
#include "xml_tags.h"

namespace onvif {

namespace {

constexpr int connectTimeoutMs = 5000;
constexpr int readTimeoutMs = 10000;

bool containsNoCase(const std::string& text, std::string_view part)
{
    auto it = std::search(text.begin(), text.end(), part.begin(), part.end(), [](char a, char b) {
        return std::tolower(static_cast<unsigned char>(a)) == std::tolower(static_cast<unsigned char>(b));
    });
    return it != text.end();
}

std::string_view localPart(std::string_view qualified)
{
    const std::size_t colon = qualified.rfind(':');
    return colon == std::string_view::npos ? qualified : qualified.substr(colon + 1);
}

void setTimeout(int ms, auto&& setter)
{
    ms = std::max(ms, 1);
    setter(static_cast<time_t>(ms / 1000), static_cast<time_t>((ms % 1000) * 1000));
}

} // namespace

bool SoapReply::wrongLogin() const
{
    if (fault) {
        for (const std::string* part : {&code, &subcode})
            if (localPart(*part) == "NotAuthorized" || localPart(*part) == "FailedAuthentication")
                return true;
        if (containsNoCase(reason, "not authorized") || containsNoCase(reason, "NotAuthorized"))
            return true;
    }
    return reached && status == 401;
}

bool SoapReply::aboutAction() const
{
    return fault && (containsNoCase(subcode, "action") || containsNoCase(reason, "action"));
}

bool SoapReply::mustUnderstand() const { return fault && localPart(code) == "MustUnderstand"; }

SoapReply readReply(int status, std::string body)
{
    SoapReply reply;
    reply.reached = true;
    reply.status = status;
    reply.body = std::move(body);
    reply.envelope = findFirst(reply.body, "Envelope").has_value();
    if (const auto fault = findFirst(reply.body, "Fault")) {
        reply.fault = true;
        reply.code = textAt(fault->inner, {"Code", "Value"}).value_or("");
        reply.subcode = textAt(fault->inner, {"Code", "Subcode", "Value"}).value_or("");
        reply.reason = textAt(fault->inner, {"Reason", "Text"}).value_or("");
        // SOAP 1.1 faults, which some cameras still send.
        if (reply.code.empty())
            reply.code = textAt(fault->inner, {"faultcode"}).value_or("");
        if (reply.reason.empty())
            reply.reason = textAt(fault->inner, {"faultstring"}).value_or("");
    }
    return reply;
}

std::string soapEnvelope(const std::string& header, const std::string& body)
{
    std::string text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>"
                       "<s:Envelope xmlns:s=\"http://www.w3.org/2003/05/soap-envelope\">";
    if (!header.empty())
        text += "<s:Header>" + header + "</s:Header>";
    return text + "<s:Body>" + body + "</s:Body></s:Envelope>";
}

SoapClient::SoapClient(std::string login, std::string password, Clock::time_point deadline)
    : login_(std::move(login)), password_(std::move(password)), deadline_(deadline)
{
}

int SoapClient::remainingMs() const
{
    return static_cast<int>(
        std::max<long long>(0, std::chrono::duration_cast<std::chrono::milliseconds>(deadline_ - Clock::now()).count()));
}

SoapReply SoapClient::post(const std::string& url, const std::string& envelope, const std::string& action,
                           bool authenticate)
{
    const auto parsed = parseUrl(url);
    const int left = remainingMs();
    if (!parsed || left <= 0)
        return {};
    Url base = *parsed;
    const std::string path = base.path.empty() ? "/" : base.path;
    base.path.clear();
    httplib::Client client(formatUrl(base));
    if (!client.is_valid())
        return {};
    setTimeout(std::min(connectTimeoutMs, left), [&](time_t s, time_t us) { client.set_connection_timeout(s, us); });
    setTimeout(std::min(readTimeoutMs, left), [&](time_t s, time_t us) {
        client.set_read_timeout(s, us);
        client.set_write_timeout(s, us);
    });
    const DigestLogin digest{login_, password_};
    std::string contentType = "application/soap+xml; charset=utf-8";
    if (!action.empty())
        contentType += "; action=\"" + action + "\"";
    auto result = postRequest(client, path, envelope, contentType, authenticate && !login_.empty() ? &digest : nullptr);
    if (!result) {
        trace("POST " + url + " failed: " + httplib::to_string(result.error()));
        return {};
    }
    trace("POST " + url + " " + std::to_string(result->status));
    return readReply(result->status, result->body);
}

SoapReply SoapClient::call(const std::string& url, const std::string& ns, const std::string& operation,
                           const std::string& body, bool authenticate)
{
    bool sendAction = true;
    SoapReply reply;
    for (int attempt = 0; attempt < 4; ++attempt) {
        std::string header;
        if (authenticate && wsSecurity_ && !login_.empty()) {
            const std::int64_t now = static_cast<std::int64_t>(std::time(nullptr)) + clockOffset_;
            header = securityHeader(makeUsernameToken(login_, password_, now));
        }
        reply = post(url, soapEnvelope(header, body), sendAction ? ns + "/" + operation : std::string(), authenticate);
        if (!reply.reached)
            return reply;
        if (sendAction && (reply.body.empty() || reply.aboutAction())) {
            sendAction = false;
            continue;
        }
        if (!header.empty() && reply.mustUnderstand()) {
            // The camera refuses the security header: Digest alone from now on.
            wsSecurity_ = false;
            continue;
        }
        return reply;
    }
    return reply;
}

} // namespace onvif
