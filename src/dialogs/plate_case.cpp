#include "dialogs/plate_case.h"

namespace vx::dialogs {

std::string upperCasePlate(const std::string& text)
{
    std::string result = text;
    for (char& c : result) {
        const auto byte = static_cast<unsigned char>(c);
        if ((byte >= 'a' && byte <= 'z') || byte >= 0xE0)   // 0xE0..0xFF: "а".."я"
            c = static_cast<char>(byte - 32);
        else if (byte == 0xB8)   // "ё"
            c = static_cast<char>(0xA8);
    }
    return result;
}

} // namespace vx::dialogs
