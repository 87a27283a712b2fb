#pragma once
// One ready-made HTTP request for a known receiver of signals.
#include <cstdint>
#include <string>

namespace vx::config {

struct ReceiverSample {
    std::int32_t type = 0;           // 0 GET, 1 POST, 2 PUT
    std::string URL;
    std::string body;
    std::int32_t bodyEncoding = 0;   // 0 Windows-1251, 1 UTF-8; set in the form only
    std::string name = "Custom";
    bool image = false;
    bool smallImage = false;
    bool plateImage = false;
    bool carImage = false;
    std::int32_t contentType = 0;    // 0 multipart/form-data, 1 application/json, 2 application/xml
};

} // namespace vx::config
