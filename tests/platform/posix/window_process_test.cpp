// Windows owned by real second processes (the window_owner helper).
#include "platform/posix/window_files.h"
#include "platform/process_info.h"
#include "platform/window_endpoint.h"
#include "support/child_process.h"
#include "support/temp_dir.h"
#include "window_test_support.h"

#include <gtest/gtest.h>

#include <chrono>
#include <fstream>
#include <thread>

using namespace vx::platform;
using namespace vx::test;
using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

namespace {

constexpr int kWaitMs = 10000;

struct OwnedWindow {
    std::unique_ptr<ChildProcess> process;
    WindowHandle handle = 0;
};

OwnedWindow startOwner(const std::string& className, const std::string& title, const std::string& mode)
{
    OwnedWindow owned;
    owned.process = ChildProcess::start(testProgramPath("window_owner"), {className, title, mode});
    if (owned.process)
        owned.handle = handleFromReadyLine(owned.process->readLine(kWaitMs).value_or(""));
    return owned;
}

char processState(long pid)
{
    std::ifstream in("/proc/" + std::to_string(pid) + "/stat");
    std::string text((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    const auto close = text.rfind(") ");
    return close == std::string::npos ? '?' : text[close + 2];
}

} // namespace

// One owner, past broken record files: found, sent to, shown, retitled.
TEST(WindowAcrossProcesses, FoundSentToShownAndRetitledPastBrokenRecords)
{
    RuntimeSandbox sandbox;
    auto owner = startOwner("VxVideoStream", "Камера 1 (вход)", "serve");
    ASSERT_NE(owner.handle, 0u);
    const auto folder = runtimeDirectory() / "windows";
    std::ofstream(folder / "0000000000000001.rec") << "garbage";
    std::ofstream(folder / "0000000000000002.rec") << "vexlane-window 1\npid 1\nstart 0\nclass 999999\nVx";
    std::ofstream(folder / "not-a-window.rec") << "";
    EXPECT_EQ(findWindow("VxVideoStream", "Камера 1 (вход)"), owner.handle);
    EXPECT_EQ(findWindow("VxVideoStream", ""), owner.handle);
    EXPECT_EQ(findWindow("VxVideoStream", "Камера 2"), 0u);
    EXPECT_EQ(windowOwnerPid(owner.handle), owner.process->pid());
    EXPECT_EQ(windowOwnerPid(1), 0);

    // The send returns only after the owner's handler ran: it sleeps 300 ms
    // and then makes the marker.
    const auto marker = sandbox.root() / "handled";
    const auto start = Clock::now();
    ASSERT_TRUE(sendCopyData(owner.handle, makeMessage(300, marker.string()), kWaitMs));
    EXPECT_TRUE(fileExists(marker));
    EXPECT_GE(millisecondsSince(start), 290);
    EXPECT_EQ(owner.process->readLine(kWaitMs), "copy 300 " + marker.string());

    EXPECT_TRUE(showWindow(owner.handle, ShowCommand::Hide, kWaitMs));
    EXPECT_TRUE(setForegroundWindow(owner.handle, kWaitMs));
    EXPECT_EQ(owner.process->readLine(kWaitMs), "show 4");
    EXPECT_EQ(owner.process->readLine(kWaitMs), "foreground");

    ASSERT_TRUE(owner.process->writeLine("title после смены"));
    ASSERT_EQ(owner.process->readLine(kWaitMs), "titled");
    EXPECT_EQ(findWindow("", "Камера 1 (вход)"), 0u);
    EXPECT_EQ(findWindow("", "после смены"), owner.handle);
}

// A killed owner, not yet reaped, counts as gone: sends to it fail at once,
// its files are removed, and a live window of the same class and title is
// found past it.
TEST(WindowAcrossProcesses, ADeadOwnerIsSkippedAndItsFilesRemoved)
{
    RuntimeSandbox sandbox;
    auto dead = startOwner("VxVideoStream", "cam", "serve");
    auto live = startOwner("VxVideoStream", "cam", "serve");
    ASSERT_NE(dead.handle, 0u);
    ASSERT_NE(live.handle, 0u);
    dead.process->kill(SIGKILL);
    const auto deadline = Clock::now() + 10s;
    while (processState(dead.process->pid()) != 'Z' && Clock::now() < deadline)
        std::this_thread::sleep_for(5ms);
    ASSERT_EQ(processState(dead.process->pid()), 'Z');

    // Its files are still there; the owner had no chance to remove them.
    EXPECT_TRUE(fileExists(windowRecord(dead.handle)));
    const auto start = Clock::now();
    EXPECT_FALSE(sendCopyData(dead.handle, makeMessage(0, "quit"), 5000));
    EXPECT_LT(millisecondsSince(start), 1000);
    EXPECT_EQ(windowOwnerPid(dead.handle), 0);
    EXPECT_EQ(findWindow("VxVideoStream", "cam"), live.handle);
    EXPECT_FALSE(fileExists(windowRecord(dead.handle)));
    EXPECT_FALSE(fileExists(windowSocket(dead.handle)));
    EXPECT_TRUE(sendCopyData(live.handle, makeMessage(0, "hello"), kWaitMs));
}

TEST(WindowAcrossProcesses, RecordOfAPidNowTakenByAnotherProcessIsSkipped)
{
    // A record naming a live pid whose start time differs: the pid was
    // handed to a new process after the owner died.
    RuntimeSandbox sandbox;
    const std::string folder = (runtimeDirectory() / "windows").string();
    std::filesystem::create_directories(folder);
    posix::WindowRecord record;
    record.pid = currentProcessId();
    record.startTime = posix::processStartTime(record.pid) + 12345;
    record.className = "VxVideoStream";
    record.title = "reused";
    const WindowHandle handle = 0x00000000000000abull;
    ASSERT_TRUE(posix::writeRecord(folder, handle, record));
    ASSERT_TRUE(fileExists(windowRecord(handle)));

    EXPECT_EQ(findWindow("VxVideoStream", "reused"), 0u);
    EXPECT_FALSE(fileExists(windowRecord(handle)));
}
