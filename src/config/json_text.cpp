#include "config/json_text.h"

namespace vx::config {

std::string doubleBackslashes(const std::string& text) {
    std::string out;
    out.reserve(text.size());
    for (char c : text) {
        out.push_back(c);
        if (c == '\\') out.push_back('\\');
    }
    return out;
}

std::string escapeJsonText(const std::string& text) {
    static const char hexDigits[] = "0123456789abcdef";
    std::string out;
    out.reserve(text.size());
    for (char c : text) {
        switch (c) {
        case '"': out += "\\\""; break;
        case '\\': out += "\\\\"; break;
        case '\b': out += "\\b"; break;
        case '\f': out += "\\f"; break;
        case '\n': out += "\\n"; break;
        case '\r': out += "\\r"; break;
        case '\t': out += "\\t"; break;
        default: {
            const auto byte = static_cast<unsigned char>(c);
            if (byte < 0x20) {
                out += "\\u00";
                out.push_back(hexDigits[byte >> 4]);
                out.push_back(hexDigits[byte & 0x0F]);
            } else {
                out.push_back(c);
            }
        }
        }
    }
    return out;
}

std::string unescapeJsonText(const std::string& text) {
    std::string out;
    out.reserve(text.size());
    const std::size_t size = text.size();
    std::size_t i = 0;
    while (i < size) {
        if (text[i] != '\\' || i + 1 == size) {
            out.push_back(text[i++]);
            continue;
        }
        char replacement = 0;
        switch (text[i + 1]) {
        case '"': replacement = '"'; break;
        case '\\': replacement = '\\'; break;
        case 'b': replacement = '\b'; break;
        case 'f': replacement = '\f'; break;
        case 'n': replacement = '\n'; break;
        case 'r': replacement = '\r'; break;
        case 't': replacement = '\t'; break;
        case 'u':
            if (i + 5 < size) {
                out.append(text, i, 6);
                i += 6;
                continue;
            }
            break;
        default: break;
        }
        if (replacement != 0) {
            out.push_back(replacement);
            i += 2;
        } else {
            out.push_back(text[i++]);   // the backslash stays; what follows is read afresh
        }
    }
    return out;
}

} // namespace vx::config
