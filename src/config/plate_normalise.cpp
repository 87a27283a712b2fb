#include "config/plate_normalise.h"

#include <array>
#include <cstdint>

#include "config/text_codec.h"

namespace vx::config {
namespace {

// The twelve pairs, Cyrillic then Latin, as one literal. The table is looked
// up by byte, so a 256-entry array stands where a hash table would: the same
// answers, one index per byte.
using PlateTable = std::array<std::uint8_t, 256>;

PlateTable buildPlateTable() {
    PlateTable table{};
    for (int byte = 0; byte < 256; ++byte) table[byte] = static_cast<std::uint8_t>(byte);
    const std::string pairs = utf8ToCp1251("АAВBСCЕEНHКKМMОO" "РPТTХXУY");
    for (std::size_t i = 0; i + 1 < pairs.size(); i += 2)
        table[static_cast<std::uint8_t>(pairs[i])] = static_cast<std::uint8_t>(pairs[i + 1]);
    return table;
}

} // namespace

std::string normalisePlate(const std::string& text) {
    static const PlateTable table = buildPlateTable();   // built once, on first use
    std::string result = text;
    for (char& c : result) c = static_cast<char>(table[static_cast<std::uint8_t>(c)]);
    return result;
}

} // namespace vx::config
