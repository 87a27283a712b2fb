// The Windows installer as an operator uses it, silently: into a folder with
// blanks and Cyrillic letters, a first start that writes the default
// configs, a second install over it that leaves them alone, a new folder
// whose first start offers the earlier settings, and silent uninstalls that
// keep the operator's data unless told to remove it.
// Not among the ctest suites: the package stage of scripts/test runs it with
// VEXLANE_INSTALLER naming the installer (a Windows path).
#include <gtest/gtest.h>

#include <windows.h>
#include <shlobj.h>

#include <cstdlib>
#include <memory>
#include <optional>
#include <string>

#include "platform/user_data.h"
#include "support/captured_stderr.h"
#include "support/child_process.h"
#include "support/installation.h"
#include "support/text_file.h"
#include "support/time_scale.h"
#include "support/win32/dialog_driver.h"

using namespace vx;
using namespace vx::test;
namespace fs = std::filesystem;

namespace {

const char* const migrationTitle = "Помощь в переносе настроек из последней запущенной программы";
const char* const defaultFiles[] = {"vx_main_config.json", "vx_recog_config_srv.json", "vx_control_config.json",
                                    "vx_mess_config.json"};

std::wstring wide(const std::string& utf8)
{
    const int n = ::MultiByteToWideChar(CP_UTF8, 0, utf8.data(), static_cast<int>(utf8.size()), nullptr, 0);
    std::wstring text(static_cast<std::size_t>(n), L'\0');
    ::MultiByteToWideChar(CP_UTF8, 0, utf8.data(), static_cast<int>(utf8.size()), text.data(), n);
    return text;
}

fs::path installerPath()
{
    const char* path = std::getenv("VEXLANE_INSTALLER");
    return path ? fs::path(wide(path)) : fs::path();
}

// Runs a command line as it stands (the installer wants /D= last and
// unquoted, blanks and all) and gives its exit code; one still running
// after the bound is ended and gives nothing.
std::optional<DWORD> run(std::wstring commandLine, int timeoutMs = 60000)
{
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION info{};
    if (!::CreateProcessW(nullptr, commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                          &info))
        return std::nullopt;
    ::CloseHandle(info.hThread);
    std::optional<DWORD> code;
    if (::WaitForSingleObject(info.hProcess, static_cast<DWORD>(scaledMs(timeoutMs))) == WAIT_OBJECT_0) {
        DWORD exit = 0;
        ::GetExitCodeProcess(info.hProcess, &exit);
        code = exit;
    } else {
        ::TerminateProcess(info.hProcess, 1);
        ::WaitForSingleObject(info.hProcess, 5000);
    }
    ::CloseHandle(info.hProcess);
    return code;
}

std::optional<DWORD> install(const fs::path& folder)
{
    return run(L"\"" + installerPath().wstring() + L"\" /S /D=" + folder.wstring());
}

// The uninstaller copies itself away and returns at once; it is done when
// it has removed itself.
bool uninstall(const fs::path& folder, const std::wstring& options = L"")
{
    const fs::path uninstaller = folder / "Uninstall.exe";
    if (run(L"\"" + uninstaller.wstring() + L"\" /S" + options) != 0u)
        return false;
    return waitFor([&] { return !fs::exists(uninstaller); }, 30000);
}

fs::path startMenuShortcut()
{
    PWSTR folder = nullptr;
    fs::path result;
    if (SUCCEEDED(::SHGetKnownFolderPath(FOLDERID_CommonPrograms, 0, nullptr, &folder)) && folder)
        result = fs::path(folder) / L"Vexlane.lnk";
    ::CoTaskMemFree(folder);
    return result;
}

// The manager's main window once the create handler has laid out its tile
// area.
bool windowUp(DWORD process)
{
    return waitFor([&] {
        HWND main = ::FindWindowW(L"Vexlane", nullptr);
        DWORD owner = 0;
        if (main)
            ::GetWindowThreadProcessId(main, &owner);
        HWND panel = main && owner == process ? ::FindWindowExW(main, nullptr, L"#32770", nullptr) : nullptr;
        return panel && ::GetDlgItem(panel, 1041);
    }, 30000);
}

// "Выход" from the menu; the manager ends by itself.
bool endManager(ChildProcess& manager)
{
    HWND main = ::FindWindowW(L"Vexlane", nullptr);
    if (main)
        ::PostMessageW(main, WM_COMMAND, 10003, 0);
    return manager.waitExit(30000).has_value();
}

bool allDefaultsWritten(const fs::path& folder)
{
    for (const char* name : defaultFiles)
        if (!fs::exists(folder / "configs" / name))
            return false;
    return true;
}

// The folders a test installs into go with it, also when it fails halfway.
struct Folders {
    fs::path root;
    explicit Folders(const wchar_t* name) : root(fs::path(L"C:\\") / name)
    {
        std::error_code ec;
        fs::remove_all(root, ec);
        // Where the manager ran last, so no earlier run offers its settings.
        fs::remove(platform::userDataDirectory() / "lastrun.txt", ec);
    }
    ~Folders()
    {
        std::error_code ec;
        fs::remove_all(root, ec);
    }
};

} // namespace

class Installer : public ::testing::Test {
protected:
    void SetUp() override
    {
        if (installerPath().empty() || !fs::exists(installerPath()))
            GTEST_FAIL() << "VEXLANE_INSTALLER names no installer";
    }
};

TEST_F(Installer, InstallsStartsReinstallsAndUninstallsKeepingTheData)
{
    CapturedStderr quiet;
    Folders folders(L"Программы Vexlane");
    const fs::path folder = folders.root / L"Пункт въезда 1";
    ASSERT_EQ(install(folder), 0u);

    // The programs, the pictures, an uninstaller, the empty data folders and
    // the shortcut.
    for (const char* name : {"vexlane.exe", "vxInference.exe", "vxControl.exe", "vxMes.exe", "vxVideoStream.exe",
                             "vxJournal.exe", "get_rtsp_onvif.exe", "Uninstall.exe", "images/vexlane.png"})
        EXPECT_TRUE(fs::is_regular_file(folder / name)) << name;
    for (const char* name : {"configs", "logs", "dumps", "videos", "reports"}) {
        EXPECT_TRUE(fs::is_directory(folder / name)) << name;
        EXPECT_TRUE(fs::is_empty(folder / name)) << name;
    }
    EXPECT_TRUE(fs::exists(startMenuShortcut()));

    // The first start writes the defaults into the empty configs folder and
    // its log into logs.
    {
        auto manager = ChildProcess::start(folder / "vexlane.exe", {});
        ASSERT_TRUE(manager);
        EXPECT_TRUE(windowUp(static_cast<DWORD>(manager->pid())));
        EXPECT_TRUE(waitFor([&] { return allDefaultsWritten(folder); }, 20000));
        EXPECT_EQ(::FindWindowW(L"#32770", wide(migrationTitle).c_str()), nullptr);
        EXPECT_TRUE(endManager(*manager));
    }
    EXPECT_TRUE(fs::exists(folder / "logs" / "VexlaneLog.txt"));
    const std::string mainConfig = readFileBytes(folder / "configs" / "vx_main_config.json");
    EXPECT_NE(mainConfig.find("\"systemLogPath\":\"" + jsonPath(folder / "logs") + "\""), std::string::npos)
        << mainConfig;

    // A white list and a setting of the operator's own survive a second
    // install over the first, byte for byte.
    writeFileBytes(folder / "configs" / "Свои.list.csv", "A123BC77\r\n");
    ASSERT_EQ(install(folder), 0u);
    EXPECT_EQ(readFileBytes(folder / "configs" / "vx_main_config.json"), mainConfig);
    EXPECT_EQ(readFileBytes(folder / "configs" / "Свои.list.csv"), "A123BC77\r\n");
    EXPECT_TRUE(fs::is_regular_file(folder / "vexlane.exe"));

    // A silent uninstall takes the programs and keeps the data.
    ASSERT_TRUE(uninstall(folder));
    for (const char* name : {"vexlane.exe", "vxInference.exe", "get_rtsp_onvif.exe", "images"})
        EXPECT_FALSE(fs::exists(folder / name)) << name;
    EXPECT_FALSE(fs::exists(startMenuShortcut()));
    EXPECT_EQ(readFileBytes(folder / "configs" / "vx_main_config.json"), mainConfig);
    EXPECT_TRUE(fs::exists(folder / "configs" / "Свои.list.csv"));
    EXPECT_TRUE(fs::exists(folder / "logs" / "VexlaneLog.txt"));
    EXPECT_TRUE(fs::is_directory(folder / "videos"));
}

TEST_F(Installer, ANewFolderOffersTheEarlierSettingsAndRemovingTheDataLeavesNothing)
{
    CapturedStderr quiet;
    Folders folders(L"Vexlane версии");
    const fs::path earlier = folders.root / L"Старая папка";
    const fs::path later = folders.root / L"Новая папка";
    ASSERT_EQ(install(earlier), 0u);
    {
        auto manager = ChildProcess::start(earlier / "vexlane.exe", {});
        ASSERT_TRUE(manager);
        EXPECT_TRUE(windowUp(static_cast<DWORD>(manager->pid())));
        EXPECT_TRUE(waitFor([&] { return allDefaultsWritten(earlier); }, 20000));
        EXPECT_TRUE(endManager(*manager));
    }
    writeFileBytes(earlier / "configs" / "Свои.list.csv", "A123BC77\r\n");

    // The new version in a folder of its own: its first start offers the
    // earlier folder's settings, and OK (folders moved, as ticked) carries
    // them over with the log, report and video folders pointing here.
    ASSERT_EQ(install(later), 0u);
    {
        auto manager = ChildProcess::start(later / "vexlane.exe", {});
        ASSERT_TRUE(manager);
        HWND offer = waitForDialogOf(static_cast<DWORD>(manager->pid()), migrationTitle, 30s);
        ASSERT_TRUE(offer);
        EXPECT_TRUE(isChecked(offer, 1561));
        click(offer, IDOK);
        EXPECT_TRUE(windowUp(static_cast<DWORD>(manager->pid())));
        EXPECT_TRUE(waitFor([&] { return allDefaultsWritten(later); }, 20000));
        EXPECT_TRUE(endManager(*manager));
    }
    EXPECT_EQ(readFileBytes(later / "configs" / "Свои.list.csv"), "A123BC77\r\n");
    const std::string moved = readFileBytes(later / "configs" / "vx_main_config.json");
    EXPECT_NE(moved.find("\"systemLogPath\":\"" + jsonPath(later / "logs") + "\""), std::string::npos) << moved;
    EXPECT_NE(moved.find("\"videoPath\":\"" + jsonPath(later / "videos") + "\""), std::string::npos) << moved;

    // Told to, the uninstaller removes the data too, and the folder with it.
    ASSERT_TRUE(uninstall(later, L" /REMOVEDATA"));
    EXPECT_TRUE(waitFor([&] { return !fs::exists(later); }, 10000));
    EXPECT_TRUE(fs::exists(earlier / "configs" / "vx_main_config.json"));
}
