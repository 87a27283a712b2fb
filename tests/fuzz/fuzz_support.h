#pragma once
// What the fuzz inputs share: a private folder for the readers that take a
// path and the check that ends the run when a reader breaks a promise. The
// inputs write files with writeFileBytes and keep the readers' complaints
// off standard error with a CapturedStderr (support/captured_stderr.h).
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>

#include "support/captured_stderr.h"

namespace vx::fuzz {

// This process's folder for inputs, made on first use and removed at exit.
const std::filesystem::path& fuzzFolder();

// Aborts with `what` on standard error (the real one) when `condition` is false.
void check(bool condition, const char* what);

// The copies the readers and writers keep beside a file they replace
// (".bak", ".broken", ".tmp"): removed after each input so the folder
// doesn't grow with the run.
void removeKeptCopies(const std::filesystem::path& folder);

inline std::string inputText(const std::uint8_t* data, std::size_t size)
{
    return std::string(reinterpret_cast<const char*>(data), size);
}

using test::CapturedStderr;
using test::readFileBytes;
using test::writeFileBytes;

} // namespace vx::fuzz
