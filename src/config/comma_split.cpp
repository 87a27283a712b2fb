#include "config/comma_split.h"

namespace vx::config {

std::vector<std::string> splitAtCommas(const std::string& text) {
    std::vector<std::string> tokens;
    std::size_t start = 0;
    while (start < text.size()) {
        const std::size_t comma = text.find(',', start);
        if (comma == std::string::npos) {
            tokens.push_back(text.substr(start));
            break;
        }
        tokens.push_back(text.substr(start, comma - start));
        start = comma + 1;
    }
    return tokens;
}

} // namespace vx::config
