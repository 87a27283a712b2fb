// The Windows manager running by itself on a temporary installation whose
// folder has blanks and Cyrillic letters: the first tick's watch starts the
// three service stand-ins and two streams, moving pictures reach the tile
// area, a killed service and a killed stream come back, "Выход" leaves them
// running, and a new start finds them.
#include <gtest/gtest.h>

#include <winsock2.h>
#include <windows.h>

#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "platform/process.h"
#include "platform/process_command_line.h"
#include "support/captured_stderr.h"
#include "support/installation.h"
#include "supervision/service_test_support.h"
#include "support/text_file.h"

using namespace vx;
using namespace vx::test;
namespace fs = std::filesystem;

namespace {

// Every process started from the installation's folder, by image name.
std::vector<platform::ProcessEntry> processesOf(const fs::path& folder)
{
    std::vector<platform::ProcessEntry> found;
    for (const auto& entry : platform::listProcesses())
        if (entry.executable.parent_path() == folder)
            found.push_back(entry);
    return found;
}

long pidOf(const fs::path& folder, const std::string& image)
{
    for (const auto& entry : processesOf(folder))
        if (platform::sameImageName(entry.imageName, image))
            return entry.pid;
    return 0;
}

bool alive(long pid)
{
    for (const auto& entry : platform::listProcesses())
        if (entry.pid == pid)
            return true;
    return false;
}

// Whatever the test started is ended with it, also when an assertion
// leaves early.
struct EndAll {
    fs::path folder;
    ~EndAll()
    {
        for (const auto& entry : processesOf(folder))
            platform::terminateProcess(entry.pid);
        waitFor([&] { return processesOf(folder).empty(); }, 10000);
    }
};

// The tile area of the manager's window as it stands on the screen, four
// bytes a pixel; empty when the window isn't there.
std::vector<std::uint8_t> tileAreaPixels(int& width, int& height)
{
    HWND main = ::FindWindowW(L"Vexlane", nullptr);
    HWND dialog = main ? ::FindWindowExW(main, nullptr, L"#32770", nullptr) : nullptr;
    HWND tiles = dialog ? ::GetDlgItem(dialog, 1041) : nullptr;
    RECT r{};
    if (!tiles || !::GetClientRect(tiles, &r) || r.right <= 0 || r.bottom <= 0)
        return {};
    width = r.right;
    height = r.bottom;
    // Read from the screen where the control stands: another process's
    // window DC shows nothing of its pixels here.
    POINT origin{0, 0};
    ::ClientToScreen(tiles, &origin);
    HDC screen = ::GetDC(nullptr);
    HDC memory = ::CreateCompatibleDC(screen);
    HBITMAP bitmap = ::CreateCompatibleBitmap(screen, width, height);
    HGDIOBJ old = ::SelectObject(memory, bitmap);
    ::BitBlt(memory, 0, 0, width, height, screen, origin.x, origin.y, SRCCOPY);
    ::SelectObject(memory, old);
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = width;
    info.bmiHeader.biHeight = -height;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    info.bmiHeader.biCompression = BI_RGB;
    std::vector<std::uint8_t> pixels(static_cast<std::size_t>(width) * height * 4);
    ::GetDIBits(memory, bitmap, 0, static_cast<UINT>(height), pixels.data(), &info, DIB_RGB_COLORS);
    ::DeleteObject(bitmap);
    ::DeleteDC(memory);
    ::ReleaseDC(nullptr, screen);
    return pixels;
}

// The middle of the first tile: the picture, away from the texts and buttons.
std::vector<std::uint8_t> firstTileMiddle()
{
    int width = 0, height = 0;
    const std::vector<std::uint8_t> pixels = tileAreaPixels(width, height);
    std::vector<std::uint8_t> middle;
    if (pixels.empty() || width < 200 || height < 200)
        return middle;
    for (int y = 90; y < 150; ++y)
        for (int x = 60; x < 160; ++x)
            for (int c = 0; c < 3; ++c)
                middle.push_back(pixels[(static_cast<std::size_t>(y) * width + x) * 4 + c]);
    return middle;
}

std::string streamFile(int id, const std::string& name)
{
    return "{\n\t\"Common\":{\n\t\t\"videoName\":\"" + name + "\",\n\t\t\"videoPath\":\"" +
           jsonPath(fs::path(VEXLANE_BIN_DIR) / "demo_videos" / "gate_entry.avi") +
           "\",\n\t\t\"fps\":5,\n\t\t\"autoRun\":true,\n\t\t\"ID\":" + std::to_string(id) +
           "\n\t},\n\t\"Recognition\":{\n\t},\n\t\"ControlReport\":{\n\t}\n}";
}

// "Выход" from the menu of the manager with this pid, once its window is
// there to be found.
bool pressExit(long pid)
{
    HWND main = nullptr;
    waitFor([&] {
        main = ::FindWindowW(L"Vexlane", nullptr);
        DWORD owner = 0;
        if (main)
            ::GetWindowThreadProcessId(main, &owner);
        return main && static_cast<long>(owner) == pid;
    }, 20000);
    return main && ::PostMessageW(main, WM_COMMAND, 10003, 0);
}

} // namespace

TEST(SelfRunning, PicturesTheWatchAndANewStartThatFindsEverything)
{
    CapturedStderr quiet;
    Installation install("Вексл ане тест");
    const fs::path folder = install.folder();
    const std::string logs = jsonPath(install.logs());
    const int base = 2000 + static_cast<int>(::GetCurrentProcessId() % 1000) * 10;
    const std::string s1 = "vx_stream" + std::to_string(base) + ".json";
    const std::string s2 = "vx_stream" + std::to_string(base + 1) + ".json";
    writeFileBytes(install.configs() / "vx_main_config.json",
                   "{\"systemLogPath\":\"" + logs + "\",\"recogLogPath\":\"" + logs + "\",\"videoPath\":\"" +
                       jsonPath(folder / "videos") +
                       "\",\"systemLevel\":0,\"perfLog\":1,\"startStatus\":true,\"globalRestart\":true,"
                       "\"videoStreams\":[\"" + s1 + "\",\"" + s2 + "\"],\"autoRunStreams\":[true,true]}");
    writeFileBytes(install.configs() / s1, streamFile(base, "Въезд" + std::to_string(base)));
    writeFileBytes(install.configs() / s2, streamFile(base + 1, "Двор" + std::to_string(base)));
    writeFileBytes(install.configs() / "vx_recog_config_srv.json",
                   "{\"port\":" + std::to_string(freeLoopbackPort()) + ",\"plateTemplates\":[]}");
    writeFileBytes(install.configs() / "vx_control_config.json", "{\"port\":" + std::to_string(freeLoopbackPort()) + "}");
    writeFileBytes(install.configs() / "vx_mess_config.json", "{\"port\":" + std::to_string(freeLoopbackPort()) + ",\"on\":1}");

    EndAll endAll{folder};
    auto manager = install.startManager();
    ASSERT_TRUE(manager);
    const fs::path log = install.logs() / "VexlaneLog.txt";
    const fs::path inferenceLog = install.logs() / "vxInferenceLog.txt";
    const std::string secondStarted = "videoStart ID" + std::to_string(base + 1) + " ok!";

    // The watch starts the services and both streams on its first ticks.
    ASSERT_TRUE(waitFor([&] { return countLines(log, secondStarted) > 0; }, 60000)) << readFileBytes(log);
    // The watch looks services up by image name across the machine: while
    // a stand-in of another test runs, ours waits for it to end.
    for (const char* image : {"vxInference.exe", "vxControl.exe", "vxMes.exe"})
        EXPECT_TRUE(waitFor([&] { return pidOf(folder, image) != 0; }, 30000)) << image;

    // The panels' polls are answered; pictures come in and reach the tiles,
    // moving.
    EXPECT_TRUE(waitFor([&] { return countLines(install.logs() / "perf.txt", "]25") > 0; }, 15000))
        << readFileBytes(install.logs() / "perf.txt");
    const std::string picture = "CopyMes: getimage empty = false";
    EXPECT_TRUE(waitFor([&] { return countLines(log, picture) >= 6; }, 20000)) << readFileBytes(log);
    const std::vector<std::uint8_t> first = firstTileMiddle();
    ASSERT_FALSE(first.empty());
    EXPECT_TRUE(waitFor([&] { return firstTileMiddle() != first; }, 10000)) << "the first tile stands still";

    // The close box only minimises, out of the task bar; a click on the tray
    // icon brings the window back. A move of the operator's ends with
    // WM_EXITSIZEMOVE, and the main config remembers where the window stands.
    HWND main = ::FindWindowW(L"Vexlane", nullptr);
    ASSERT_TRUE(main);
    ::PostMessageW(main, WM_CLOSE, 0, 0);
    // (The window's state shows before its size handler has run.)
    EXPECT_TRUE(waitFor([&] {
        return ::IsIconic(main) && (::GetWindowLongPtrW(main, GWL_EXSTYLE) & WS_EX_TOOLWINDOW);
    }, 5000));
    ::PostMessageW(main, 1025, 1, WM_LBUTTONUP);
    EXPECT_TRUE(waitFor([&] {
        return !::IsIconic(main) && (::GetWindowLongPtrW(main, GWL_EXSTYLE) & WS_EX_APPWINDOW);
    }, 5000));
    ::SetWindowPos(main, nullptr, 40, 30, 900, 700, SWP_NOZORDER | SWP_NOACTIVATE);
    ::PostMessageW(main, WM_EXITSIZEMOVE, 0, 0);
    const fs::path mainConfig = install.configs() / "vx_main_config.json";
    EXPECT_TRUE(waitFor([&] {
        const std::string text = readText(mainConfig);
        return text.find("\t\"xWindow\":40,\n\t\"yWindow\":30,\n\t\"wWindow\":900,\n\t\"hWindow\":700,\n") !=
               std::string::npos;
    }, 5000)) << readText(mainConfig);

    // A killed service and a killed stream come back.
    const long inferencePid = standInPid(inferenceLog);
    long streamPid = 0;
    for (const auto& entry : processesOf(folder))
        if (platform::readProcessCommandLine(entry.pid).find(s2) != std::string::npos)
            streamPid = entry.pid;
    ASSERT_NE(inferencePid, 0);
    ASSERT_NE(streamPid, 0);
    platform::terminateProcess(inferencePid);
    platform::terminateProcess(streamPid);
    EXPECT_TRUE(waitFor([&] { return countLines(log, secondStarted) >= 2; }, 40000)) << readFileBytes(log);
    EXPECT_TRUE(waitFor([&] { return standInPid(inferenceLog) != inferencePid && alive(standInPid(inferenceLog)); },
                        30000));

    // "Выход": the manager ends; what it started goes on running.
    // (Each start blocks the watch up to five seconds: the set is taken
    // once all are up.)
    std::set<long> running;
    for (const auto& entry : processesOf(folder))
        if (!platform::sameImageName(entry.imageName, "vexlane.exe"))
            running.insert(entry.pid);
    ASSERT_TRUE(pressExit(manager->pid()));
    const auto exitCode = manager->waitExit(20000);
    ASSERT_TRUE(exitCode);
    EXPECT_EQ(*exitCode, 0);
    EXPECT_NE(readText(log).rfind("]Close\n"), std::string::npos);
    for (long pid : running)
        EXPECT_TRUE(alive(pid)) << pid;

    // A new start finds them all: nothing is started again.
    auto again = install.startManager();
    ASSERT_TRUE(again);
    EXPECT_TRUE(waitFor([&] { return countLines(log, "onTimer") >= 4; }, 20000)) << readFileBytes(log);
    std::set<long> after;
    for (const auto& entry : processesOf(folder))
        if (!platform::sameImageName(entry.imageName, "vexlane.exe"))
            after.insert(entry.pid);
    EXPECT_EQ(after, running);
    EXPECT_TRUE(pressExit(again->pid()));
    EXPECT_TRUE(again->waitExit(20000)) << readFileBytes(log);
}
