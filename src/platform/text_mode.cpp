#include "platform/text_mode.h"

#include <cstring>

namespace vx::platform {

std::string toTextMode(std::string_view text) {
    const std::string_view lineEnd(textLineEnd, std::strlen(textLineEnd));
    if (lineEnd == "\n") return std::string(text);
    std::string out;
    out.reserve(text.size() + text.size() / 16);
    for (const char c : text) {
        if (c == '\n')
            out += lineEnd;
        else
            out.push_back(c);
    }
    return out;
}

} // namespace vx::platform
