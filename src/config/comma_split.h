#pragma once
// Splitting a line of a list file or a day rule at commas.
#include <string>
#include <vector>

namespace vx::config {

// The tokens between commas, as reading a stream up to each comma gives
// them: a comma at the end makes no further (empty) token, the empty text
// gives none, and two commas in a row give an empty token between them.
std::vector<std::string> splitAtCommas(const std::string& text);

} // namespace vx::config
