#include "config/number_format.h"

#include <locale>
#include <sstream>

namespace vx::config {

std::string formatReal(double value) {
    std::ostringstream out;
    out.imbue(std::locale::classic());
    out << value;
    return out.str();
}

} // namespace vx::config
