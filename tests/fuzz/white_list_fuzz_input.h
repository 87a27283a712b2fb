#pragma once
// One input of the white list fuzz target: the same bytes read as a CSV list,
// as an extended list and as the registry of lists.
#include <cstddef>
#include <cstdint>

namespace vx::config::fuzz {

// Reads the bytes through every white list reader in a private folder, with
// standard error silenced. Aborts when a list read back after a save has
// lost or changed a row.
void readWhiteListFuzzInput(const std::uint8_t* data, std::size_t size);

} // namespace vx::config::fuzz
