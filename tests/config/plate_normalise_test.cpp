#include "config/plate_normalise.h"

#include <gtest/gtest.h>

#include "config/text_codec.h"

namespace vx::config {
namespace {

// The twelve Cyrillic letters with a Latin twin become it; all else passes.
TEST(PlateNormalise, CyrillicAndLatinTwinsMeetOtherBytesPassUnchanged) {
    EXPECT_EQ(normalisePlate(utf8ToCp1251("А123ВС77")), "A123BC77");
    EXPECT_EQ(normalisePlate("A123BC77"), "A123BC77");
    EXPECT_EQ(normalisePlate(utf8ToCp1251("АВСЕНКМОРТХУ")), "ABCEHKMOPTXY");
    EXPECT_EQ(normalisePlate(""), "");
    // Lower case, letters without a twin, masks and digits.
    const std::string others = utf8ToCp1251("авсБГДЖЯ*[]|09 x");
    EXPECT_EQ(normalisePlate(others), others);
    // Every byte value keeps the length, NUL included.
    std::string all;
    for (int b = 0; b < 256; ++b) all += static_cast<char>(b);
    EXPECT_EQ(normalisePlate(all).size(), 256u);
}

} // namespace
} // namespace vx::config
