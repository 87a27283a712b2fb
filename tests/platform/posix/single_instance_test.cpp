#include "platform/single_instance.h"
#include "platform/window_endpoint.h"
#include "support/child_process.h"
#include "support/temp_dir.h"

#include <gtest/gtest.h>

using namespace vx::platform;
using vx::test::ChildProcess;
using vx::test::RuntimeSandbox;
using vx::test::testProgramPath;

namespace {

constexpr int kWaitMs = 10000;

std::unique_ptr<ChildProcess> startProbe()
{
    return ChildProcess::start(testProgramPath("instance_probe"), {"VexlaneOnce", "Vexlane"});
}

} // namespace

// A taken lock without a window still means leave; a second process raises
// the first and exits with one, until the first is killed.
TEST(SingleInstance, SecondProcessLeavesWithOneAndRaisesTheFirstUntilItIsKilled)
{
    RuntimeSandbox sandbox;
    {
        // Held by this process, and nobody has a window of the class.
        std::unique_ptr<NamedLock> mine;
        ASSERT_TRUE(acquireSingleInstance("VexlaneOnce", mine));
        ASSERT_TRUE(mine);
        auto probe = startProbe();
        ASSERT_TRUE(probe);
        EXPECT_EQ(probe->readLine(kWaitMs), "alone");
        EXPECT_EQ(probe->waitExit(kWaitMs), 1);
    }

    auto first = startProbe();
    ASSERT_TRUE(first);
    ASSERT_EQ(first->readLine(kWaitMs), "first");

    auto second = startProbe();
    ASSERT_TRUE(second);
    EXPECT_EQ(second->readLine(kWaitMs), "raised");
    EXPECT_EQ(second->waitExit(kWaitMs), 1);
    EXPECT_EQ(first->readLine(kWaitMs), "show " + std::to_string(int(ShowCommand::Restore)));
    EXPECT_EQ(first->readLine(kWaitMs), "foreground");

    first->kill(SIGKILL);
    ASSERT_TRUE(first->waitExit(kWaitMs));
    auto next = startProbe();
    ASSERT_TRUE(next);
    EXPECT_EQ(next->readLine(kWaitMs), "first");
}
