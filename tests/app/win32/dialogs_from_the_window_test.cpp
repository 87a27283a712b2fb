// The real manager's dialogs opened the operator's way: a click on the add
// tile opens the stream dialog in the manager's process, what is typed into
// it is written as the new stream's file, and a main button opens its
// settings dialog over the window.
#include <gtest/gtest.h>

#include <windows.h>

#include "liveview/tile_grid.h"
#include "support/captured_stderr.h"
#include "support/installation.h"
#include "support/text_file.h"
#include "support/win32/dialog_driver.h"

using namespace vx;
using namespace vx::test;
namespace fs = std::filesystem;

TEST(DialogsFromTheWindow, TheAddTileWritesANewStreamAndAMainButtonOpensItsDialog)
{
    CapturedStderr quiet;
    Installation install("Диалоги окна");
    writeFileBytes(install.configs() / "vx_main_config.json",
                   "{\"systemLogPath\":\"" + jsonPath(install.logs()) + "\",\"startStatus\":false,"
                   "\"globalRestart\":false,\"videoStreams\":[],\"autoRunStreams\":[]}");
    auto manager = install.startManager();
    ASSERT_TRUE(manager);
    const auto process = static_cast<DWORD>(manager->pid());

    // The window, then its main dialog with the tile area, which the create
    // handler makes a moment after the window.
    HWND main = nullptr;
    HWND panel = nullptr;
    HWND tiles = nullptr;
    ASSERT_TRUE(waitFor([&] {
        main = ::FindWindowW(L"Vexlane", nullptr);
        DWORD owner = 0;
        if (main)
            ::GetWindowThreadProcessId(main, &owner);
        panel = main && owner == process ? ::FindWindowExW(main, nullptr, L"#32770", nullptr) : nullptr;
        tiles = panel ? ::GetDlgItem(panel, 1041) : nullptr;
        return tiles != nullptr;
    }, 20000));

    // The add tile where the layout puts it for no streams.
    RECT area{};
    ::GetClientRect(tiles, &area);
    liveview::TileGrid grid;
    liveview::layoutTiles(grid, area.right, area.bottom, 0);
    const LPARAM middle = MAKELPARAM(grid.addTileRect.x + grid.addTileRect.width / 2,
                                     grid.addTileRect.y + grid.addTileRect.height / 2);
    ::PostMessageW(tiles, WM_LBUTTONDOWN, MK_LBUTTON, middle);
    ::PostMessageW(tiles, WM_LBUTTONUP, 0, middle);
    HWND stream = waitForDialogOf(process, "Добавить видеопоток", 20s);
    ASSERT_TRUE(stream);
    typeText(stream, 1201, "rtsp://127.0.0.1:8554/gate");
    typeText(stream, 1203, "Въезд");
    click(stream, IDOK);
    EXPECT_TRUE(waitGone(stream));
    const fs::path file = install.configs() / "vx_stream0.json";
    EXPECT_TRUE(waitFor([&] { return readText(file).find("\"videoPath\":\"rtsp://127.0.0.1:8554/gate\"") !=
                                     std::string::npos; }, 10000)) << readText(file);

    // "Контроль" opens the process control dialog; Cancel leaves the file.
    const std::string before = readFileBytes(install.configs() / "vx_main_config.json");
    ::PostMessageW(panel, WM_COMMAND, MAKEWPARAM(1087, BN_CLICKED), 0);
    HWND control = waitForDialogOf(process, "Контроль за запущенными процессами", 20s);
    EXPECT_TRUE(control);
    if (control) {
        click(control, IDCANCEL);
        EXPECT_TRUE(waitGone(control));
    }
    EXPECT_EQ(readFileBytes(install.configs() / "vx_main_config.json"), before);

    ::PostMessageW(main, WM_COMMAND, 10003, 0);
    EXPECT_TRUE(manager->waitExit(20000).has_value());
}
