// The Win32 platform layer against real second processes: named mutexes
// across processes (abandoned ones too), the manager's single instance,
// WM_COPYDATA, picture blocks, process start/find/kill and command lines,
// the Run key, the minidump of a crash, and paths with Cyrillic and blanks.
#include "probe_process.h"
#include "support/installation.h"

#include "platform/autorun.h"
#include "platform/command_line.h"
#include "platform/file_delete.h"
#include "platform/file_replace.h"
#include "platform/file_time.h"
#include "platform/named_lock.h"
#include "platform/process_command_line.h"
#include "platform/process_info.h"
#include "platform/shared_block.h"
#include "platform/window_endpoint.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <fstream>
#include <iterator>
#include <thread>

using namespace vx::platform;
using vx::test::waitFor;
using vx::test::ProbeProcess;
using vx::test::testsFolder;

namespace {

std::string unique(const std::string& stem)
{
    return stem + std::to_string(currentProcessId());
}

// A fresh folder whose name holds Cyrillic letters and a blank.
struct CyrillicFolder {
    CyrillicFolder()
    {
        path = std::filesystem::temp_directory_path() / std::filesystem::path(L"vx-w32-" + std::to_wstring(
                                                            currentProcessId())) / L"Путь с пробелом";
        std::filesystem::create_directories(path);
    }
    ~CyrillicFolder()
    {
        std::error_code ec;
        std::filesystem::remove_all(path.parent_path(), ec);
    }
    std::filesystem::path path;
};

} // namespace

TEST(Win32NamedLock, ExclusiveAcrossProcessesAndTakenOverWhenTheHolderIsKilled)
{
    const std::string name = unique("VxTestLock");
    auto lock = createNamedLock(name);
    ASSERT_TRUE(lock);
    ASSERT_TRUE(lock->tryLock());
    ASSERT_TRUE(lock->tryLock()) << "recursive within one thread";
    bool otherThread = true;
    std::thread([&] { otherThread = createNamedLock(name)->tryLock(); }).join();
    EXPECT_FALSE(otherThread);
    lock->unlock();
    lock->unlock();

    ProbeProcess holder("platform_probe.exe lock " + name);
    ASSERT_TRUE(holder.waitForOutput("locked"));
    EXPECT_FALSE(lock->tryLock());
    ASSERT_TRUE(terminateProcess(holder.pid()));
    // The killed holder's mutex is abandoned and handed to the next taker.
    EXPECT_TRUE(waitFor([&] { return lock->tryLock(); }, 20000));
    lock->unlock();
}

TEST(Win32SingleInstance, SecondManagerRaisesTheFirstAndLeavesWithOne)
{
    const auto bin = testsFolder().parent_path() / "bin";
    ProbeProcess first("vexlane.exe", bin);
    ASSERT_TRUE(first.process);
    WindowHandle window = 0;
    ASSERT_TRUE(waitFor([&] { return (window = findWindow("Vexlane", "")) != 0; }, 20000));
    EXPECT_EQ(windowOwnerPid(window), first.pid());
    EXPECT_EQ(findWindow("Vexlane", "Vexlane Распознавание автомобильных номеров"), window);

    ProbeProcess second("vexlane.exe", bin);
    ASSERT_TRUE(second.process);
    ASSERT_TRUE(second.process->waitForExit(20000));
    EXPECT_EQ(second.process->exitCode(), 1);
    EXPECT_FALSE(first.process->waitForExit(0));
}

TEST(Win32Window, CopyDataReachesAnotherProcessAndBadSendsFailCleanly)
{
    const std::string title = unique("VxProbeWindow");
    ProbeProcess owner("platform_probe.exe window " + title);
    ASSERT_TRUE(owner.waitForOutput("ready"));
    const WindowHandle window = findWindow("VexlaneProbe", title);
    ASSERT_NE(window, 0u);
    EXPECT_EQ(windowOwnerPid(window), owner.pid());
    EXPECT_EQ(findWindow("VexlaneProbe", title + "x"), 0u);

    bool result = false;
    ASSERT_TRUE(sendCopyData(window, copyDataOf(7, {'p', 'i', 'n', 'g'}), 5000, &result));
    EXPECT_TRUE(result);
    ASSERT_TRUE(owner.waitForOutput("copy 7 4 [ping]"));
    ASSERT_TRUE(sendCopyData(window, copyDataOf(8, {'p', 'o', 'n', 'g'}), 5000, &result));
    EXPECT_FALSE(result);

    CopyDataMessage tooShort = copyDataOf(9, {'a', 'b'});
    tooShort.cbData = 10;
    EXPECT_FALSE(sendCopyData(window, tooShort, 5000));
    EXPECT_FALSE(sendCopyData(window, copyDataOf(9, std::vector<char>(65537, 'x')), 5000));
    EXPECT_FALSE(sendCopyData(0, copyDataOf(9, {'a'}), 5000));

    ASSERT_TRUE(terminateProcess(owner.pid()));
    ASSERT_TRUE(owner.process->waitForExit(20000));
    EXPECT_TRUE(waitFor([&] { return windowOwnerPid(window) == 0; }, 20000));
    EXPECT_FALSE(sendCopyData(window, copyDataOf(7, {'p', 'i', 'n', 'g'}), 5000));
}

TEST(Win32SharedBlock, WrittenByOneProcessReadByAnother)
{
    const std::string name = unique("VxVideoStreamSharedMemoryID");
    ProbeProcess stream("platform_probe.exe block " + name + " picture-bytes");
    ASSERT_TRUE(stream.waitForOutput("ready"));
    auto block = openSharedBlock(name, 500000);
    ASSERT_TRUE(block);
    EXPECT_EQ(block->size(), 500000u);
    EXPECT_STREQ(block->data(), "picture-bytes");
    EXPECT_FALSE(openSharedBlock(name, 4 * 500000)) << "shorter than asked";
    EXPECT_FALSE(openSharedBlock(unique("VxVideoStreamSharedMemoryIDmissing"), 500000));
}

TEST(Win32Process, StartFindReadCommandLineAndTerminateByExeName)
{
    CyrillicFolder folder;
    const std::string image = unique("vx_probe_") + ".exe";
    std::filesystem::copy_file(testsFolder() / "platform_probe.exe", folder.path / image);

    const std::string commandLine = image + " wait \"two words\" x\\\"y";
    ProbeProcess probe(commandLine, folder.path);
    ASSERT_TRUE(probe.waitForOutput("ready"));
    EXPECT_EQ(findProcessByName(image), probe.pid());
    EXPECT_EQ(splitCommandLine(readProcessCommandLine(probe.pid())), splitCommandLine(commandLine));
    EXPECT_EQ(readProcessCommandLine(0), "");

    ASSERT_TRUE(terminateProcess(probe.pid()));
    ASSERT_TRUE(probe.process->waitForExit(20000));
    EXPECT_EQ(probe.process->exitCode(), 0);
    EXPECT_TRUE(waitFor([&] { return findProcessByName(image) == 0; }, 20000));

    ProbeProcess leaving("platform_probe.exe exit 3");
    ASSERT_TRUE(leaving.process);
    ASSERT_TRUE(leaving.process->waitForExit(20000));
    EXPECT_EQ(leaving.process->exitCode(), 3);
    EXPECT_FALSE(ProbeProcess("vx_no_such_program.exe").process);
}

TEST(Win32Autorun, RunKeyValueWrittenReadAndRemoved)
{
    const std::string name = unique("VexlaneTest");
    const std::wstring valueName(name.begin(), name.end());
    const std::filesystem::path target = L"C:\\Программы\\Vexlane с пробелом\\vexlane.exe";
    const auto stored = [&]() -> std::wstring {
        wchar_t buffer[512];
        DWORD size = sizeof buffer;
        if (::RegGetValueW(HKEY_CURRENT_USER, L"Software\\Microsoft\\Windows\\CurrentVersion\\Run",
                           valueName.c_str(), RRF_RT_REG_SZ, nullptr, buffer, &size) != ERROR_SUCCESS)
            return L"<none>";
        return buffer;
    };
    ASSERT_TRUE(setAutorun(name, target, true));
    EXPECT_EQ(stored(), target.native());
    ASSERT_TRUE(setAutorun(name, target, false));
    EXPECT_EQ(stored(), L"<none>");
    EXPECT_TRUE(setAutorun(name, target, false)) << "removing an absent entry succeeds";
}

// The C runtime turns a fault into its signal before the exception filter
// sees it; an exception that no signal stands for reaches the filter.
TEST(Win32CrashCapture, CrashInAChildLeavesAMinidumpAndExitCodeOne)
{
    CyrillicFolder folder;
    std::filesystem::copy_file(testsFolder() / "platform_probe.exe", folder.path / "platform_probe.exe");
    std::filesystem::create_directory(folder.path / "dumps");
    const std::filesystem::path dumpFile = folder.path / "dumps" / "VexlaneDump.dmp";
    for (const auto& [mode, text] : {std::pair<std::string, std::string>{"crash", "Signal 11 received!\n"},
                                     {"raise", "Creating dump after exception. Code: 3758096385\n"}}) {
        std::filesystem::remove(dumpFile);
        ProbeProcess crashing("platform_probe.exe " + mode, folder.path);
        ASSERT_TRUE(crashing.process);
        ASSERT_TRUE(crashing.process->waitForExit(20000));
        EXPECT_EQ(crashing.process->exitCode(), 1);
        EXPECT_TRUE(crashing.waitForOutput(text)) << crashing.output;
        std::ifstream dump(dumpFile, std::ios::binary);
        char magic[4] = {};
        dump.read(magic, 4);
        EXPECT_EQ(std::string(magic, 4), "MDMP") << mode;
    }
}

TEST(Win32Files, PathsAndDeleteUnlessInUseUnderACyrillicFolder)
{
    CyrillicFolder folder;
    EXPECT_EQ(executablePath().filename(), "platform_tests.exe");
    EXPECT_EQ(folderOf(L"C:\\Путь с пробелом\\x.exe"), std::filesystem::path(L"C:\\Путь с пробелом"));

    const auto file = folder.path / L"журнал.txt";
    auto mark = markFileInUse(file);
    ASSERT_TRUE(mark);
    EXPECT_EQ(deleteFileUnlessInUse(file), FileDeleteResult::refused);
    mark.reset();
    EXPECT_EQ(deleteFileUnlessInUse(file), FileDeleteResult::deleted);
    EXPECT_EQ(deleteFileUnlessInUse(file), FileDeleteResult::missing);

    std::string error;
    const auto target = folder.path / L"настройки.json";
    ASSERT_TRUE(writeWholeFile(target, "old", error)) << error;
    ASSERT_TRUE(writeWholeFile(folder.path / L"новые.tmp", "new\r\n", error)) << error;
    ASSERT_TRUE(replaceFile(folder.path / L"новые.tmp", target, error)) << error;
    std::ifstream in(target, std::ios::binary);
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(in), {}), "new\r\n");
    EXPECT_TRUE(fileModificationTime(target));
    EXPECT_FALSE(fileModificationTime(folder.path / L"нет.txt"));
    EXPECT_FALSE(replaceFile(folder.path / L"нет.txt", target, error));
    EXPECT_FALSE(error.empty());
}
