#include "ui/win32/main_window.h"

#include <commctrl.h>
#include <shellapi.h>

#include <algorithm>
#include <chrono>
#include <thread>

#include "core/create_steps.h"
#include "core/dialog_commands.h"
#include "core/edit_wiring.h"
#include "core/main_commands.h"
#include "core/service_wiring.h"
#include "core/settings_commands.h"
#include "core/status_panels.h"
#include "core/stream_wiring.h"
#include "core/timer_thread.h"
#include "core/window_placement.h"
#include "imaging/picture_ops.h"
#include "liveview/interface_images.h"
#include "liveview/live_view.h"
#include "liveview/tile_hover.h"
#include "maintenance/system_log.h"
#include "platform/paths.h"
#include "platform/process.h"
#include "platform/win32/wide_text.h"
#include "supervision/http_clients.h"
#include "supervision/stream_channel.h"
#include "supervision/stream_control.h"
#include "ui/win32/about_window.h"
#include "ui/win32/edit_hooks.h"
#include "ui/win32/message_boxes.h"
#include "ui/win32/resource_ids.h"
#include "ui/win32/settings_migration_window.h"
#include "ui/win32/settings_windows.h"
#include "ui/win32/white_list_windows.h"
#include "ui/win32/win_text.h"

namespace vx::ui::win32 {

namespace {

const wchar_t className[] = L"Vexlane";
const char windowTitle[] = "Vexlane Распознавание автомобильных номеров";

// Handed from other threads to the window's own.
constexpr UINT zoneReadyMessage = WM_APP + 1;
constexpr UINT statusTextMessage = WM_APP + 2;

struct DialogButton {
    int id;
    const char* picture;
};

const DialogButton dialogButtons[] = {
    {IDC_START_ALL, "button1.png"}, {IDC_STOP_ALL, "button2.png"}, {IDC_RECOGNITION, "button3.png"},
    {IDC_WATCH, "button4.png"},     {IDC_CONTROL, "button5.png"},  {IDC_LISTS, "button6.png"},
    {IDC_MESSENGERS, "button7.png"}, {IDC_JOURNAL, "button8.png"},
};

core::Rect rectOf(const RECT& r)
{
    return {r.left, r.top, r.right - r.left, r.bottom - r.top};
}

BOOL CALLBACK addWorkArea(HMONITOR monitor, HDC, LPRECT, LPARAM data)
{
    MONITORINFO info{};
    info.cbSize = sizeof info;
    if (::GetMonitorInfoW(monitor, &info))
        reinterpret_cast<std::vector<core::Rect>*>(data)->push_back(rectOf(info.rcWork));
    return TRUE;
}

std::vector<core::Rect> monitorWorkAreas()
{
    std::vector<core::Rect> areas;
    ::EnumDisplayMonitors(nullptr, nullptr, addWorkArea, reinterpret_cast<LPARAM>(&areas));
    return areas;
}

// A picture of images\ as a bitmap for a button, its alpha laid over the
// button face.
HBITMAP buttonBitmap(const std::filesystem::path& file)
{
    const imaging::Picture picture = imaging::readPictureFile(file);
    if (picture.empty())
        return nullptr;
    imaging::Picture pixels = imaging::makePicture(picture.width, picture.height, 4);
    imaging::convertInto(picture, pixels);
    if (picture.channels == 4) {
        const COLORREF face = ::GetSysColor(COLOR_BTNFACE);
        const int faceBgr[3] = {GetBValue(face), GetGValue(face), GetRValue(face)};
        for (int y = 0; y < picture.height; ++y)
            for (int x = 0; x < picture.width; ++x) {
                const std::uint8_t* from = picture.at(x, y);
                std::uint8_t* to = pixels.at(x, y);
                for (int c = 0; c < 3; ++c)
                    to[c] = static_cast<std::uint8_t>((from[c] * from[3] + faceBgr[c] * (255 - from[3])) / 255);
                to[3] = 255;
            }
    }
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = pixels.width;
    info.bmiHeader.biHeight = -pixels.height;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    info.bmiHeader.biCompression = BI_RGB;
    void* bits = nullptr;
    HBITMAP bitmap = ::CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
    if (!bitmap)
        return nullptr;
    for (int y = 0; y < pixels.height; ++y)
        std::copy_n(pixels.row(y), static_cast<std::size_t>(pixels.width) * 4,
                    static_cast<std::uint8_t*>(bits) + static_cast<std::size_t>(y) * pixels.width * 4);
    return bitmap;
}

// What the main commands show and open, bound to the window.
core::MainCommandHooks commandHooks(HWND window)
{
    core::MainCommandHooks hooks = core::systemCommandHooks();
    hooks.destroyWindow = [window] { ::DestroyWindow(window); };
    // The folder in the desktop's file manager, not waited for.
    hooks.openFolder = [](const std::filesystem::path& folder) {
        platform::ProcessStartInfo info;
        const std::u8string utf8 = folder.u8string();
        info.commandLine = "explorer.exe \"" + std::string(utf8.begin(), utf8.end()) + "\"";
        platform::startProcess(info);
    };
    hooks.openFile = [window](const std::filesystem::path& file) {
        ::ShellExecuteW(window, L"open", file.c_str(), nullptr, nullptr, SW_SHOWNORMAL);
    };
    hooks.showMessage = [window](const std::string& title, const std::string& text) {
        showErrorBox(window, title, text);
    };
    hooks.showAbout = [window](const std::string& text) { showAboutDialog(window, text); };
    return hooks;
}

core::SettingsHooks settingsHooks(HWND window, core::AppState& state)
{
    core::SettingsHooks hooks = core::systemSettingsHooks(state);
    hooks.dialogs = settingsDialogs(window);
    hooks.showMessage = [window](const std::string& title, const std::string& text) {
        showErrorBox(window, title, text);
    };
    return hooks;
}

} // namespace

MainWindow::MainWindow(core::AppState& state, HINSTANCE instance) : state_(state), instance_(instance)
{
    actions_.launch = core::launchAsync;
    actions_.saveMainConfig = [this] { return core::saveMainConfig(state_); };
    services_ = supervision::makeServiceContext(state_);
    liveView_ = std::make_shared<liveview::LiveView>();
    core::connectServiceActions(actions_, services_, state_);
    core::connectStreamActions(actions_, supervision::makeStreamControl(state_));
    icon_ = ::LoadIconW(instance_, MAKEINTRESOURCEW(IDI_VEXLANE));
}

MainWindow::~MainWindow()
{
    if (trayMenu_)
        ::DestroyMenu(trayMenu_);
}

bool MainWindow::registerClass(HINSTANCE instance)
{
    WNDCLASSW windowClass{};
    windowClass.style = CS_HREDRAW | CS_VREDRAW;
    windowClass.lpfnWndProc = procedure;
    windowClass.hInstance = instance;
    windowClass.hIcon = ::LoadIconW(instance, MAKEINTRESOURCEW(IDI_VEXLANE));
    windowClass.hCursor = ::LoadCursorW(nullptr, MAKEINTRESOURCEW(32512));   // the arrow
    windowClass.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1);
    windowClass.lpszClassName = className;
    if (::RegisterClassW(&windowClass))
        return true;
    ::MessageBoxW(nullptr, L"Cannot register class", L"Error", MB_ICONERROR);
    return false;
}

HWND MainWindow::create()
{
    HWND window = ::CreateWindowExW(0, className, wideLiteral(windowTitle).c_str(), WS_OVERLAPPEDWINDOW,
                                    CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, nullptr, nullptr,
                                    instance_, this);
    if (!window)
        ::MessageBoxW(nullptr, L"Cannot create window", L"Error", MB_ICONERROR);
    return window;
}

LRESULT CALLBACK MainWindow::procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_NCCREATE) {
        auto* self = static_cast<MainWindow*>(reinterpret_cast<CREATESTRUCTW*>(lParam)->lpCreateParams);
        self->window_ = window;
        ::SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(self));
    }
    auto* self = reinterpret_cast<MainWindow*>(::GetWindowLongPtrW(window, GWLP_USERDATA));
    if (!self)
        return ::DefWindowProcW(window, message, wParam, lParam);
    return self->handle(message, wParam, lParam);
}

LRESULT MainWindow::handle(UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_CREATE:
        onCreate();
        return 0;
    case WM_DESTROY:
        teardown();
        return 0;
    case WM_CLOSE:
        // The close box never ends the program.
        ::ShowWindow(window_, SW_MINIMIZE);
        return 0;
    case WM_SIZE:
        onSize(wParam);
        break;
    case WM_TIMER:
        if (wParam == IDT_TICK) {
            onTimerTick();
            return 0;
        }
        if (wParam == IDT_RESERVED)
            return 0;
        break;
    case WM_COMMAND:
        onMenuCommand(LOWORD(wParam));
        break;
    case WM_COPYDATA: {
        const auto* data = reinterpret_cast<const COPYDATASTRUCT*>(lParam);
        if (!data)
            return FALSE;
        // A stream names itself by its ID in cbData; a block that comes
        // with it is not read.
        platform::CopyDataMessage copy;
        copy.dwData = data->dwData;
        copy.cbData = data->cbData;
        return supervision::onCopyData(state_.streams, copy, core::calendarSeconds) ? TRUE : FALSE;
    }
    case WM_EXITSIZEMOVE:
        if (state_.createFinished && !::IsZoomed(window_))
            rememberGeometry();
        break;
    case WM_TRAY_CALLBACK:
        onTrayEvent(static_cast<UINT>(lParam));
        return 0;
    case zoneReadyMessage:
        showPendingZone();
        return 0;
    case statusTextMessage: {
        std::string text;
        {
            std::lock_guard<std::mutex> lock(handOverMutex_);
            text = pendingStatus_;
        }
        showStatusText(text);
        return 0;
    }
    default:
        break;
    }
    return ::DefWindowProcW(window_, message, wParam, lParam);
}

void MainWindow::onCreate()
{
    offerSettingsMigration(window_, state_);
    buildMainMenu();
    buildTrayMenu();
    if (!buildMainDialog())
        return;
    INITCOMMONCONTROLSEX controls{sizeof(INITCOMMONCONTROLSEX), ICC_BAR_CLASSES};
    ::InitCommonControlsEx(&controls);
    statusBar_ = ::CreateWindowExW(0, STATUSCLASSNAMEW, nullptr, WS_CHILD | WS_VISIBLE | SBARS_SIZEGRIP, 0, 0, 0, 0,
                                   mainDialog_, reinterpret_cast<HMENU>(static_cast<INT_PTR>(IDC_STATUS_BAR)),
                                   instance_, nullptr);
    // A status text may be set on any thread; the bar shows it on this one.
    HWND window = window_;
    state_.status.setShown([this, window](const std::string& text) {
        {
            std::lock_guard<std::mutex> lock(handOverMutex_);
            pendingStatus_ = text;
        }
        ::PostMessageW(window, statusTextMessage, 0, 0);
    });
    const std::filesystem::path images = state_.baseDirectory / "images";
    liveview::loadInterfaceImages(*liveView_, images, state_.status);
    attachTileArea(tiles_, ::GetDlgItem(mainDialog_, IDC_TILE_AREA));
    tiles_.onHover = [this](int x, int y) { onTileHover(x, y); };
    tiles_.onClick = [this](int x, int y) { onTileClick(x, y); };
    addTrayIcon();

    if (!runConfigSteps())
        return;   // the posted teardown ends the program from the message loop
    core::initServiceClients(*services_);
    ::SetTimer(window_, IDT_TICK, 1000, nullptr);
    // The timer thread's drawings reach this thread through a posted
    // message; only the newest waiting one is shown.
    core::startTimerThread(state_, services_, liveView_, reinterpret_cast<platform::WindowHandle>(window_),
                           [this, window](liveview::ZonePicture zone) {
                               {
                                   std::lock_guard<std::mutex> lock(handOverMutex_);
                                   if (zone.serial < pendingZone_.serial)
                                       return;
                                   pendingZone_ = std::move(zone);
                                   zonePending_ = true;
                               }
                               ::PostMessageW(window, zoneReadyMessage, 0, 0);
                           });
    VX_LOG(maintenance::logTrace, "OnCreate ok!");
    placeWindow();
    layout();
    state_.createFinished = true;
}

bool MainWindow::runConfigSteps()
{
    core::StartupHooks hooks;
    hooks.showMessage = [this](const std::string& title, const std::string& text) {
        showErrorBox(window_, title, text);
    };
    // Posted, not destroyed: the teardown runs from the message loop.
    hooks.postTeardown = [this] { ::PostMessageW(window_, WM_DESTROY, 0, 0); };
    hooks.setAutorun = core::systemCommandHooks().setAutorun;
    hooks.setAutorunTick = [this](bool ticked) {
        ::CheckMenuItem(trayMenu_, IDM_TRAY_AUTORUN, MF_BYCOMMAND | (ticked ? MF_CHECKED : MF_UNCHECKED));
    };
    return core::runConfigSteps(state_, hooks);
}

void MainWindow::buildMainMenu()
{
    HMENU bar = ::CreateMenu();
    HMENU file = ::CreatePopupMenu();
    HMENU help = ::CreatePopupMenu();
    if (!bar || !file || !help)
        return;
    const bool built =
        ::AppendMenuW(file, MF_STRING, IDM_OPEN_SYSTEM_LOG, wideLiteral("Открыть папку системного журнала").c_str()) &&
        ::AppendMenuW(file, MF_STRING, IDM_OPEN_RECOG_LOG,
                      wideLiteral("Открыть папку журнала распознавания").c_str()) &&
        ::AppendMenuW(file, MF_STRING, IDM_SETTINGS, wideLiteral("Настройки").c_str()) &&
        ::AppendMenuW(file, MF_STRING, IDM_EXIT, wideLiteral("Выход").c_str()) &&
        ::AppendMenuW(bar, MF_POPUP, reinterpret_cast<UINT_PTR>(file), wideLiteral("Файл").c_str()) &&
        ::AppendMenuW(help, MF_STRING, IDM_HELP_FILE, wideLiteral("Помощь").c_str()) &&
        ::AppendMenuW(help, MF_STRING, IDM_ABOUT, wideLiteral("О программе").c_str()) &&
        ::AppendMenuW(bar, MF_POPUP, reinterpret_cast<UINT_PTR>(help), wideLiteral("Справка").c_str());
    // A failing call leaves the window without a menu.
    if (built)
        ::SetMenu(window_, bar);
}

void MainWindow::buildTrayMenu()
{
    trayMenu_ = ::CreatePopupMenu();
    ::AppendMenuW(trayMenu_, MF_STRING, IDM_TRAY_AUTORUN, wideLiteral("Автозагрузка").c_str());
    ::AppendMenuW(trayMenu_, MF_STRING, IDM_TRAY_EXIT, wideLiteral("Выход").c_str());
}

bool MainWindow::buildMainDialog()
{
    mainDialog_ = ::CreateDialogParamW(instance_, MAKEINTRESOURCEW(IDD_MAIN_DIALOG), window_, dialogProcedure,
                                       reinterpret_cast<LPARAM>(this));
    if (!mainDialog_)
        return false;
    const std::filesystem::path images = state_.baseDirectory / "images";
    for (const DialogButton& b : dialogButtons)
        if (HBITMAP bitmap = buttonBitmap(images / b.picture))
            ::SendDlgItemMessageW(mainDialog_, b.id, BM_SETIMAGE, IMAGE_BITMAP, reinterpret_cast<LPARAM>(bitmap));
    updateStatusPanels();
    return true;
}

INT_PTR CALLBACK MainWindow::dialogProcedure(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_INITDIALOG) {
        ::SetWindowLongPtrW(dialog, DWLP_USER, lParam);
        return TRUE;
    }
    auto* self = reinterpret_cast<MainWindow*>(::GetWindowLongPtrW(dialog, DWLP_USER));
    if (message == WM_COMMAND && self) {
        const int id = LOWORD(wParam);
        if (id >= IDC_START_ALL && id <= IDC_WATCH && HIWORD(wParam) == BN_CLICKED) {
            self->onDialogCommand(id);
            return TRUE;
        }
    }
    return FALSE;
}

void MainWindow::addTrayIcon()
{
    NOTIFYICONDATAW data{};
    data.cbSize = sizeof data;
    data.hWnd = window_;
    data.uID = ID_TRAY_ICON;
    data.uFlags = NIF_ICON | NIF_MESSAGE | NIF_TIP;
    data.uCallbackMessage = WM_TRAY_CALLBACK;
    data.hIcon = icon_;
    const std::wstring tip = wideLiteral(windowTitle).substr(0, std::size(data.szTip) - 1);
    std::copy(tip.begin(), tip.end(), data.szTip);
    trayIconAdded_ = ::Shell_NotifyIconW(NIM_ADD, &data) != FALSE;
}

void MainWindow::teardown()
{
    if (tornDown_)
        return;
    tornDown_ = true;
    if (trayIconAdded_) {
        NOTIFYICONDATAW data{};
        data.cbSize = sizeof data;
        data.hWnd = window_;
        data.uID = ID_TRAY_ICON;
        ::Shell_NotifyIconW(NIM_DELETE, &data);
    }
    state_.shuttingDown = true;
    // Gives the timer thread and the running service requests the time to
    // see the flag.
    ::Sleep(1500);
    // The clients stop; the services themselves go on running.
    supervision::stopClients(services_->clients);
    ::PostQuitMessage(0);
}

void MainWindow::onSize(WPARAM code)
{
    if (!mainDialog_)
        return;
    if (code == SIZE_MINIMIZED) {
        // Out of the task bar while minimised; the tray brings it back.
        ::SetWindowLongPtrW(window_, GWL_EXSTYLE, WS_EX_TOOLWINDOW);
        state_.minimised = true;
        return;
    }
    if (code == SIZE_RESTORED) {
        ::SetWindowLongPtrW(window_, GWL_EXSTYLE, WS_EX_APPWINDOW);
        state_.minimised = false;
    }
    // Straight from minimised to maximised leaves the flag set until the
    // next plain restore.
    layout();
}

void MainWindow::layout()
{
    if (!mainDialog_)
        return;
    RECT client;
    ::GetClientRect(window_, &client);
    ::MoveWindow(mainDialog_, 0, 0, client.right, client.bottom, TRUE);
    RECT dialogClient;
    ::GetClientRect(mainDialog_, &dialogClient);
    int statusHeight = 0;
    if (statusBar_) {
        int parts[1] = {dialogClient.right};
        ::SendMessageW(statusBar_, SB_SETPARTS, 1, reinterpret_cast<LPARAM>(parts));
        ::SendMessageW(statusBar_, WM_SIZE, 0, 0);
        RECT bar;
        ::GetWindowRect(statusBar_, &bar);
        statusHeight = bar.bottom - bar.top;
    }
    if (tiles_.control) {
        RECT tile;
        ::GetWindowRect(tiles_.control, &tile);
        POINT origin{tile.left, tile.top};
        ::ScreenToClient(mainDialog_, &origin);
        const core::Size zone =
            core::tileZoneForClient(dialogClient.right, dialogClient.bottom, statusHeight, origin.x, origin.y);
        redrawTiles(zone.width, zone.height);
    }
    updateStatusPanels();
}

void MainWindow::placeWindow()
{
    const config::MainConfig& c = state_.liveMainConfig;
    const core::Placement placement{c.xWindow, c.yWindow, c.wWindow, c.hWindow, c.display};
    RECT frame;
    ::GetWindowRect(window_, &frame);
    const auto rect = core::placeWindow(placement, monitorWorkAreas(), rectOf(frame));
    if (!rect)
        return;
    ::SetWindowPos(window_, nullptr, rect->x, rect->y, rect->width, rect->height, SWP_NOZORDER | SWP_NOACTIVATE);
}

void MainWindow::rememberGeometry()
{
    RECT frame;
    ::GetWindowRect(window_, &frame);
    core::rememberWindowGeometry(state_, actions_, rectOf(frame), monitorWorkAreas());
}

void MainWindow::onTimerTick()
{
    if (!core::onTimer(state_))
        return;
    showStatusText(state_.status.get());
    updateStatusPanels();
}

void MainWindow::updateStatusPanels()
{
    if (!mainDialog_)
        return;
    const core::StatusPanelTexts texts = core::statusPanelTexts(state_);
    ::SetDlgItemTextW(mainDialog_, IDC_SERVICE_PANEL, wideOf(texts.services).c_str());
    ::SetDlgItemTextW(mainDialog_, IDC_STREAM_PANEL, wideOf(texts.streams).c_str());
}

void MainWindow::showStatusText(const std::string& cp1251)
{
    if (statusBar_)
        ::SendMessageW(statusBar_, SB_SETTEXTW, 0, reinterpret_cast<LPARAM>(wideOf(cp1251).c_str()));
}

void MainWindow::onMenuCommand(int id)
{
    if (id == IDM_TRAY_EXIT || id == IDM_TRAY_AUTORUN)
        return;   // the tray's items come back from its menu, not as commands
    core::MainCommandHooks hooks = commandHooks(window_);
    hooks.openSettings = [this] { core::editSettings(state_, actions_, settingsHooks(window_, state_)); };
    core::runMenuCommand(state_, id, hooks);
    showStatusText(state_.status.get());
}

void MainWindow::onDialogCommand(int id)
{
    core::DialogCommandHooks hooks;
    hooks.commands = commandHooks(window_);
    hooks.settings = settingsHooks(window_, state_);
    hooks.openWhiteLists = [this] { runWhiteListManager(window_, state_); };
    core::runDialogCommand(state_, actions_, id, hooks);
    showStatusText(state_.status.get());
}

void MainWindow::onTrayEvent(UINT mouseMessage)
{
    if (mouseMessage == WM_LBUTTONUP) {
        ::ShowWindow(window_, SW_SHOWNORMAL);
        ::SetForegroundWindow(window_);
        return;
    }
    if (mouseMessage != WM_RBUTTONUP)
        return;
    ::CheckMenuItem(trayMenu_, IDM_TRAY_AUTORUN,
                    MF_BYCOMMAND | (state_.liveMainConfig.autoRunManager ? MF_CHECKED : MF_UNCHECKED));
    POINT cursor;
    ::GetCursorPos(&cursor);
    ::SetForegroundWindow(window_);
    const int chosen = static_cast<int>(::TrackPopupMenu(trayMenu_, TPM_BOTTOMALIGN | TPM_RETURNCMD | TPM_NONOTIFY,
                                                         cursor.x, cursor.y, 0, window_, nullptr));
    if (chosen == IDM_TRAY_EXIT) {
        ::PostMessageW(window_, WM_DESTROY, 0, 0);
    } else if (chosen == IDM_TRAY_AUTORUN) {
        // The tick turns with the click; a failed change shows only the next
        // time the menu opens.
        const bool ticked = !(::GetMenuState(trayMenu_, IDM_TRAY_AUTORUN, MF_BYCOMMAND) & MF_CHECKED);
        ::CheckMenuItem(trayMenu_, IDM_TRAY_AUTORUN, MF_BYCOMMAND | (ticked ? MF_CHECKED : MF_UNCHECKED));
        core::toggleTrayAutorun(state_, actions_, commandHooks(window_));
    }
}

void MainWindow::redrawTiles(int width, int height)
{
    const liveview::ZonePicture zone =
        liveview::drawCamera(state_.streams, *liveView_, width, height, core::tileDrawHooks());
    showZone(tiles_, zone.pixels, zone.serial);
}

void MainWindow::showPendingZone()
{
    liveview::ZonePicture zone;
    {
        std::lock_guard<std::mutex> lock(handOverMutex_);
        if (!zonePending_)
            return;
        zone = std::move(pendingZone_);
        pendingZone_.serial = zone.serial;
        zonePending_ = false;
    }
    showZone(tiles_, zone.pixels, zone.serial);
}

void MainWindow::onTileHover(int x, int y)
{
    if (liveview::updateHover(state_.streams, *liveView_, x, y))
        redrawTiles(-1, -1);
}

void MainWindow::onTileClick(int x, int y)
{
    state_.status.set("");
    showStatusText("");
    Win32Messages messages(window_);
    core::EditHooks hooks = windowEditHooks(window_, state_, messages, services_, [this] { redrawTiles(-1, -1); });
    core::editCamera(state_, *liveView_, hooks, x, y);
}

} // namespace vx::ui::win32
