// The manager runs once per session: a second start raises the first one and
// leaves with exit code 1.
#include <gtest/gtest.h>

#include <cstdlib>

#include "platform/window_endpoint.h"
#include "support/installation.h"

using namespace vx;
using namespace vx::test;

namespace {

platform::WindowHandle managerWindow()
{
    return platform::findWindow("Vexlane", "");
}

} // namespace

TEST(ManagerInstance, SecondStartExitsWithOneAndLeavesTheFirstRunning)
{
    RuntimeSandbox sandbox;
    ScopedEnv headless("QT_QPA_PLATFORM", "offscreen");
    // A folder with blanks and Cyrillic letters in its path.
    Installation install("Распознавание номеров 1");
    auto first = install.startManager();
    ASSERT_TRUE(first);
    ASSERT_TRUE(waitFor([] { return managerWindow() != 0; }, 20000)) << "the first manager never showed its window";
    EXPECT_EQ(platform::windowOwnerPid(managerWindow()), first->pid());

    auto second = install.startManager();
    ASSERT_TRUE(second);
    EXPECT_EQ(second->waitExit(20000), std::optional<int>(1));
    // The first one is still there and still answers.
    EXPECT_FALSE(first->waitExit(200).has_value());
    EXPECT_TRUE(platform::showWindow(managerWindow(), platform::ShowCommand::Restore, 5000));
    first->kill(9);
    first->waitExit(5000);
}
