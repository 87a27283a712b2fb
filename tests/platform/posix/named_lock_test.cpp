#include "platform/named_lock.h"
#include "platform/paths.h"
#include "support/child_process.h"
#include "support/temp_dir.h"

#include <gtest/gtest.h>

#include <csignal>
#include <unistd.h>

#include <chrono>
#include <future>

using namespace vx::platform;
using vx::test::ChildProcess;
using vx::test::RuntimeSandbox;
using vx::test::testProgramPath;
using namespace std::chrono_literals;

namespace {

constexpr int kWaitMs = 10000;

std::unique_ptr<ChildProcess> startHolder(const std::string& name, const std::string& mode)
{
    return ChildProcess::start(testProgramPath("lock_holder"), {name, mode});
}

// What a second process gets when it tries the lock right now.
std::string probeFromOtherProcess(const std::string& name)
{
    auto probe = startHolder(name, "try");
    if (!probe)
        return "not started";
    return probe->readLine(kWaitMs).value_or("no answer");
}

} // namespace

// One holder in another process walked through the waits, the kill and a
// child of its own that outlives it: the manager holds its lock for life and
// starts processes that must not keep its locks after it is gone.
TEST(NamedLock, HeldByAnotherProcessUntilReleasedOrKilledAndNotByItsChild)
{
    RuntimeSandbox sandbox;
    auto holder = startHolder("vxShared", "lock");
    ASSERT_TRUE(holder);
    ASSERT_EQ(holder->readLine(kWaitMs), "locked");
    auto lock = createNamedLock("vxShared");
    ASSERT_TRUE(lock);
    EXPECT_FALSE(lock->tryLock());
    auto taken = std::async(std::launch::async, [&] {
        const bool ok = lock->lock();
        if (ok)
            lock->unlock();
        return ok;
    });
    EXPECT_EQ(taken.wait_for(200ms), std::future_status::timeout);
    ASSERT_TRUE(holder->writeLine("unlock"));
    ASSERT_EQ(taken.wait_for(std::chrono::milliseconds(kWaitMs)), std::future_status::ready);
    EXPECT_TRUE(taken.get());
    EXPECT_EQ(holder->readLine(kWaitMs), "unlocked");

    ASSERT_TRUE(holder->writeLine("try"));
    ASSERT_EQ(holder->readLine(kWaitMs), "locked");
    ASSERT_TRUE(holder->writeLine("spawn"));
    const auto spawned = holder->readLine(kWaitMs);
    ASSERT_TRUE(spawned && spawned->rfind("spawned ", 0) == 0) << spawned.value_or("");
    const pid_t child = static_cast<pid_t>(std::stol(spawned->substr(8)));
    holder->kill(SIGKILL);
    ASSERT_EQ(holder->waitExit(kWaitMs), 128 + SIGKILL);
    EXPECT_EQ(::kill(child, 0), 0) << "the child should still run";
    // Its lock file is left behind, and blocks nobody.
    EXPECT_TRUE(fileExists(sandbox.root() / "vexlane/locks/vxShared.lock"));
    EXPECT_EQ(probeFromOtherProcess("vxShared"), "locked");
    ::kill(child, SIGKILL);
}

TEST(NamedLock, RecursiveWithinAThreadAndGivenBackByTheLastUnlockOrTheDestructor)
{
    RuntimeSandbox sandbox;
    auto lock = createNamedLock("vxRecursive");
    ASSERT_TRUE(lock);
    ASSERT_TRUE(lock->lock());
    ASSERT_TRUE(lock->lock());
    // A second object of the same name in the same thread joins in as well,
    // as a reader calling the writer does.
    auto again = createNamedLock("vxRecursive");
    ASSERT_TRUE(again->tryLock());
    again->unlock();

    lock->unlock();
    EXPECT_EQ(probeFromOtherProcess("vxRecursive"), "busy");
    lock->unlock();
    EXPECT_EQ(probeFromOtherProcess("vxRecursive"), "locked");
    ASSERT_TRUE(lock->lock());
    ASSERT_TRUE(lock->lock());
    lock.reset();
    EXPECT_EQ(probeFromOtherProcess("vxRecursive"), "locked");
}

TEST(NamedLock, ExcludesOtherThreadsOfTheProcess)
{
    RuntimeSandbox sandbox;
    auto mine = createNamedLock("vxThreads");
    auto theirs = createNamedLock("vxThreads");
    ASSERT_TRUE(mine && theirs);
    ASSERT_TRUE(mine->lock());

    EXPECT_FALSE(std::async(std::launch::async, [&] { return theirs->tryLock(); }).get());
    // The very object that holds it is no key for another thread either.
    EXPECT_FALSE(std::async(std::launch::async, [&] { return mine->tryLock(); }).get());

    auto waiting = std::async(std::launch::async, [&] {
        const bool ok = theirs->lock();
        theirs->unlock();
        return ok;
    });
    EXPECT_EQ(waiting.wait_for(100ms), std::future_status::timeout);
    mine->unlock();
    ASSERT_EQ(waiting.wait_for(std::chrono::milliseconds(kWaitMs)), std::future_status::ready);
    EXPECT_TRUE(waiting.get());
}
