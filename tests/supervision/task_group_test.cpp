#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <stdexcept>
#include <thread>

#include "support/captured_stderr.h"
#include "supervision/task_group.h"

namespace vx::supervision {
namespace {

// Many tasks, some slow and one that throws: waitAll returns after the last,
// a throwing task costs the others nothing, and the group's end waits too.
TEST(TaskGroup, RunsEveryTaskAndWaitsForAllOfThem)
{
    std::atomic<int> done{0};
    test::CapturedStderr err;
    {
        TaskGroup group;
        for (int i = 0; i < 40; ++i)
            group.spawn([&done, i] {
                if (i % 10 == 0) std::this_thread::sleep_for(std::chrono::milliseconds(20));
                if (i == 13) throw std::runtime_error("refused");
                ++done;
            });
        group.waitAll();
        EXPECT_EQ(done.load(), 39);   // the 13th threw
        group.spawn([&done] {
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
            ++done;
        });
    }
    EXPECT_EQ(done.load(), 40);
    EXPECT_NE(err.text().find("Spawned task failed: refused"), std::string::npos);
}

} // namespace
} // namespace vx::supervision
