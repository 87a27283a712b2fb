// libFuzzer entry of the white list readers (built with -DVEXLANE_FUZZ=ON).
#include <cstddef>
#include <cstdint>

#include "white_list_fuzz_input.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    vx::config::fuzz::readWhiteListFuzzInput(data, size);
    return 0;
}
