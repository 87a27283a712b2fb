// The real vxJournal.exe, started as the manager's "Журнал" button starts it,
// over a log folder with lines of every kind: the list shows them, a higher
// level in the filter leaves fewer, a search narrows them, and a line
// appended to the file shows up. Which lines each filter keeps, and the
// reading of a file cut short, are the journal_filter and journal_lines tests'.
#include <gtest/gtest.h>

#include <windows.h>

#include <commctrl.h>

#include <fstream>

#include "config/text_codec.h"
#include "core/main_commands.h"
#include "support/installation.h"
#include "support/temp_dir.h"
#include "support/win32/dialog_driver.h"
#include "win32/journal_ids.h"

using namespace vx;
using namespace vx::test;
namespace fs = std::filesystem;

namespace {

std::string cp1251Path(const fs::path& path)
{
    const std::u8string utf8 = path.u8string();
    return config::utf8ToCp1251(std::string(utf8.begin(), utf8.end()));
}

void appendLines(const fs::path& file, const std::string& lines)
{
    std::ofstream(file, std::ios::binary | std::ios::app) << lines;
}

} // namespace

TEST(JournalWindow, TheManagersCommandShowsTheLogAndTheFilterSearchAndFollowingChangeIt)
{
    TempDir dir;
    const fs::path logs = dir.path() / u8"журналы";
    fs::create_directories(logs);
    const fs::path log = logs / "VexlaneLog.txt";
    appendLines(log, "[2024-05-01 10:20:30]Start\r\n"
                     "[2024-05-01 10:20:30][TRACE]ConfigGlobal ok!\r\n"
                     "[2024-05-01 10:20:31][DEBUG]poll\r\n"
                     "[2024-05-01 10:20:31][INFO]JournalStart\r\n"
                     "[2024-05-01 10:20:32][WARNING]" + config::utf8ToCp1251("Поток Въезд не отвечает") + "\r\n"
                     "[2024-05-01 10:20:33][ERROR]videoStop error\r\n"
                     "[2024-05-01 10:20:34] Signal 11 received!\r\n"
                     "[2024-05-01 10:20:35][CRITICAL]stop\r\n");

    core::AppState state;
    state.baseDirectory = VEXLANE_BIN_DIR;
    state.ConfigDirectory = cp1251Path(dir.path() / "configs");
    state.liveMainConfig.systemLogPath = cp1251Path(logs);
    std::unique_ptr<platform::StartedProcess> viewer;
    core::MainCommandHooks hooks;
    hooks.startProcess = [&viewer](const platform::ProcessStartInfo& info) {
        viewer = platform::startProcess(info);
        return std::unique_ptr<platform::StartedProcess>();
    };
    core::onJournalCommand(state, hooks);
    ASSERT_TRUE(viewer);
    const long pid = viewer->pid();

    HWND window = waitForDialogOf(static_cast<DWORD>(pid), "", 20s);
    ASSERT_TRUE(window);
    HWND list = ::GetDlgItem(window, IDC_LINES);
    const auto rows = [list] { return ::SendMessageW(list, LVM_GETITEMCOUNT, 0, 0); };
    const auto counts = [window] { return shownText(window, IDC_COUNTS); };
    const fs::path shownLog = logs / "VexlaneLog.txt";
    wchar_t title[1024] = {};
    ::GetWindowTextW(window, title, 1024);
    EXPECT_EQ(std::wstring(L"Журнал Vexlane - ") + shownLog.wstring(), std::wstring(title));

    EXPECT_TRUE(waitFor([&] { return rows() == 8; }, 10000)) << rows();
    EXPECT_EQ(counts(), "Показано строк: 8 из 8");
    shoot(window, "journal_window");

    // "ERROR и выше": the error, the standard error line and the critical one.
    choose(window, IDC_LEVEL, 4);
    EXPECT_EQ(rows(), 3);
    EXPECT_EQ(counts(), "Показано строк: 3 из 8");

    // A warning and an error appended: only the error comes into view.
    appendLines(log, "[2024-05-01 10:21:00][WARNING]late\r\n[2024-05-01 10:21:01][ERROR]" +
                         config::utf8ToCp1251("Въезд: нет кадров") + "\r\n");
    EXPECT_TRUE(waitFor([&] { return rows() == 4; }, 10000)) << rows();
    EXPECT_EQ(counts(), "Показано строк: 4 из 10");

    // The search, ignoring case, on top of the level.
    typeText(window, IDC_SEARCH, "въезд");
    EXPECT_EQ(rows(), 1);
    typeText(window, IDC_SEARCH, "");
    choose(window, IDC_LEVEL, 0);
    EXPECT_EQ(rows(), 10);

    EXPECT_TRUE(platform::terminateProcess(pid));
    EXPECT_TRUE(viewer->waitForExit(10000));
}
