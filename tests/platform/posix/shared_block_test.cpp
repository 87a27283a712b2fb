// Picture blocks shared by name between processes.
#include <gtest/gtest.h>

#include <cstring>
#include <unistd.h>

#include "platform/shared_block.h"

using namespace vx::platform;

namespace {
std::string uniqueName(const char* what)
{
    return std::string("VexlaneSharedBlockTest_") + what + "_" + std::to_string(::getpid());
}
} // namespace

TEST(SharedBlock, TwoCreatorsShareOneBlockAndTheLastTakesTheName)
{
    const std::string name = uniqueName("two");
    auto first = createSharedBlock(name, 4096);
    ASSERT_TRUE(first);
    auto second = createSharedBlock(name, 4096);
    ASSERT_TRUE(second);
    std::strcpy(second->writableData(), "from the second");
    auto view = openSharedBlock(name, 4096);
    ASSERT_TRUE(view);
    EXPECT_STREQ(view->data(), "from the second");
    EXPECT_STREQ(first->data(), "from the second");

    // The first creator goes: the second one's block is still reachable.
    first.reset();
    EXPECT_TRUE(openSharedBlock(name, 4096));
    EXPECT_TRUE(view->current());
    // The last creator goes: the name goes with it; a view kept meanwhile
    // stays readable but is no longer current.
    second.reset();
    EXPECT_FALSE(openSharedBlock(name, 4096));
    EXPECT_FALSE(view->current());
    EXPECT_STREQ(view->data(), "from the second");

    // A view longer than the block is refused.
    auto block = createSharedBlock(name, 1024);
    ASSERT_TRUE(block);
    EXPECT_FALSE(openSharedBlock(name, 4096));
    EXPECT_TRUE(openSharedBlock(name, 1024));
    EXPECT_FALSE(openSharedBlock(uniqueName("absent"), 1024));
}
