// libFuzzer entry of one fuzz input, chosen by VEXLANE_FUZZ_TARGET when the
// executable is built (-DVEXLANE_FUZZ=ON).
#include <cstdio>
#include <cstdlib>

#include "fuzz_registry.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const vx::fuzz::FuzzTarget* const target = [] {
        const vx::fuzz::FuzzTarget* found = vx::fuzz::findFuzzTarget(VEXLANE_FUZZ_TARGET);
        if (!found) {
            std::fprintf(stderr, "no fuzz input named %s\n", VEXLANE_FUZZ_TARGET);
            std::abort();
        }
        return found;
    }();
    target->input(data, size);
    return 0;
}
