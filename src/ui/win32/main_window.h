#pragma once
// The manager's window on Windows: class "Vexlane", its menu, the main
// dialog (resource 111) with the eight buttons, the status panels and the
// tile area, the status bar, the tray icon and the one-second timer. It
// binds the core's logic to the Win32 calls and holds none of its own.
#include <windows.h>

#include <memory>
#include <mutex>
#include <string>

#include "core/process_actions.h"
#include "liveview/tile_pictures.h"
#include "state/app_state.h"
#include "supervision/service_context.h"
#include "ui/win32/tile_area.h"

namespace vx::liveview { struct LiveView; }

namespace vx::ui::win32 {

class MainWindow {
public:
    MainWindow(core::AppState& state, HINSTANCE instance);
    ~MainWindow();
    MainWindow(const MainWindow&) = delete;
    MainWindow& operator=(const MainWindow&) = delete;

    // Registers the class "Vexlane"; false (after the message) on failure.
    static bool registerClass(HINSTANCE instance);
    // Creates the window; the create handler runs inside. Null (after the
    // message) on failure.
    HWND create();
    HWND handle() const { return window_; }

private:
    static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    static INT_PTR CALLBACK dialogProcedure(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);
    LRESULT handle(UINT message, WPARAM wParam, LPARAM lParam);

    void onCreate();
    bool runConfigSteps();
    void buildMainMenu();
    void buildTrayMenu();
    bool buildMainDialog();
    void addTrayIcon();
    void teardown();
    void onSize(WPARAM code);
    void layout();
    void placeWindow();
    void rememberGeometry();
    void onTimerTick();
    void onMenuCommand(int id);
    void onDialogCommand(int id);
    void onTrayEvent(UINT mouseMessage);
    void updateStatusPanels();
    void showStatusText(const std::string& cp1251);
    void redrawTiles(int width, int height);
    void onTileHover(int x, int y);
    void onTileClick(int x, int y);
    void showPendingZone();

    core::AppState& state_;
    HINSTANCE instance_;
    core::ProcessActions actions_;
    std::shared_ptr<supervision::ServiceContext> services_;
    std::shared_ptr<liveview::LiveView> liveView_;
    HWND window_ = nullptr;
    HWND mainDialog_ = nullptr;
    HWND statusBar_ = nullptr;
    HMENU trayMenu_ = nullptr;
    HICON icon_ = nullptr;
    bool trayIconAdded_ = false;
    bool tornDown_ = false;
    TileArea tiles_;
    // Handed over from the timer thread and the status setters.
    std::mutex handOverMutex_;
    liveview::ZonePicture pendingZone_;
    bool zonePending_ = false;
    std::string pendingStatus_;
};

} // namespace vx::ui::win32
