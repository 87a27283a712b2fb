#include "fuzz_registry.h"

#include <map>

namespace vx::fuzz {
namespace {

std::map<std::string, FuzzTarget>& targets()
{
    static std::map<std::string, FuzzTarget> all;
    return all;
}

} // namespace

FuzzRegistration::FuzzRegistration(std::string name, FuzzInput input, std::vector<std::string> tokens)
{
    targets()[name] = FuzzTarget{name, input, std::move(tokens)};
}

const FuzzTarget* findFuzzTarget(const std::string& name)
{
    const auto found = targets().find(name);
    return found == targets().end() ? nullptr : &found->second;
}

std::vector<std::string> fuzzTargetNames()
{
    std::vector<std::string> names;
    for (const auto& entry : targets())
        names.push_back(entry.first);
    return names;
}

} // namespace vx::fuzz
