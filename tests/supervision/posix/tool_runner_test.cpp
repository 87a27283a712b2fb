// The tool runner: one pipe for both streams, read after the end; a tool
// past its wait is left running and gives nothing.
#include <gtest/gtest.h>

#include <chrono>
#include <csignal>

#include "supervision/tool_runner.h"

namespace vx::supervision {
namespace {

TEST(ToolRunner, ReadsBothStreamsAfterTheEnd)
{
    // More than one 4096-byte read, and standard error in the same pipe.
    const ToolRun run = runTool("sh -c \"seq 1 3000; echo err 1>&2\"", "/", 5000);
    ASSERT_TRUE(run.started && run.ended);
    std::string expected;
    for (int i = 1; i <= 3000; ++i)
        expected += std::to_string(i) + "\n";
    EXPECT_EQ(run.output, expected + "err\n");
}

TEST(ToolRunner, MissingProgramAndTimeout)
{
    EXPECT_FALSE(runTool("no_such_tool_vexlane -scan", "/", 1000).started);
    const auto start = std::chrono::steady_clock::now();
    const ToolRun run = runTool("sh -c \"echo early; sleep 3\"", "/", 300);
    EXPECT_TRUE(run.started);
    EXPECT_FALSE(run.ended);
    EXPECT_EQ(run.output, "");
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(2));
}

} // namespace
} // namespace vx::supervision
