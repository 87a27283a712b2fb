#pragma once
// One SOAP 1.2 request to a camera, with the ways cameras differ: the action
// in the content type or not, WS-Security or HTTP Digest, faults with any
// HTTP status. Every request keeps to the time left before the deadline.
#include <chrono>
#include <cstdint>
#include <string>

namespace onvif {

using Clock = std::chrono::steady_clock;

inline constexpr const char* deviceNamespace = "http://www.onvif.org/ver10/device/wsdl";
inline constexpr const char* mediaNamespace = "http://www.onvif.org/ver10/media/wsdl";
inline constexpr const char* media2Namespace = "http://www.onvif.org/ver20/media/wsdl";
inline constexpr const char* schemaNamespace = "http://www.onvif.org/ver10/schema";

struct SoapReply {
    bool reached = false;     // an HTTP answer came back
    int status = 0;
    std::string body;
    bool envelope = false;    // the body is a SOAP envelope
    bool fault = false;
    std::string code;         // Code/Value, Subcode/Value, Reason/Text of a fault
    std::string subcode;
    std::string reason;

    bool ok() const { return reached && envelope && !fault && status < 400; }
    // NotAuthorized or FailedAuthentication, or a 401 that Digest didn't pass.
    bool wrongLogin() const;
    bool aboutAction() const;
    bool mustUnderstand() const;
};

// What an answer says: envelope or not, and the fault's parts.
SoapReply readReply(int status, std::string body);
// The whole envelope for a body; `header` is put into s:Header when not empty.
std::string soapEnvelope(const std::string& header, const std::string& body);

class SoapClient {
public:
    SoapClient(std::string login, std::string password, Clock::time_point deadline);

    // Seconds to add to the local clock to get the camera's.
    void setClockOffset(std::int64_t seconds) { clockOffset_ = seconds; }
    std::int64_t clockOffset() const { return clockOffset_; }
    bool usesWsSecurity() const { return wsSecurity_; }
    int remainingMs() const;

    // `operation` in `ns`; `body` is the request element as it goes into
    // s:Body. With `authenticate`, a UsernameToken goes along (until a
    // camera refuses the header) and Digest answers a 401.
    SoapReply call(const std::string& url, const std::string& ns, const std::string& operation,
                   const std::string& body, bool authenticate);

private:
    SoapReply post(const std::string& url, const std::string& envelope, const std::string& action,
                   bool authenticate);

    std::string login_;
    std::string password_;
    Clock::time_point deadline_;
    std::int64_t clockOffset_ = 0;
    bool wsSecurity_ = true;
};

} // namespace onvif
