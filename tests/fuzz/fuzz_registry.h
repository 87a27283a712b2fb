#pragma once
// The fuzz inputs by name. Each input source registers its inputs, one
// FuzzRegistration each at namespace scope; the plain driver and the
// libFuzzer executables look them up by name.
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace vx::fuzz {

using FuzzInput = void (*)(const std::uint8_t* data, std::size_t size);

struct FuzzTarget {
    std::string name;
    FuzzInput input = nullptr;
    std::vector<std::string> tokens;   // pieces the reader gives meaning to
};

class FuzzRegistration {
public:
    FuzzRegistration(std::string name, FuzzInput input, std::vector<std::string> tokens);
};

// Null when no input of that name is built in.
const FuzzTarget* findFuzzTarget(const std::string& name);
std::vector<std::string> fuzzTargetNames();

} // namespace vx::fuzz
