// The manager's Windows entry: no system dialogs on critical errors, the
// crash capture, one instance per session, and the main window with its
// message loop. The window's contents come with the Win32 front end.
#include "maintenance/crash_capture.h"
#include "platform/paths.h"
#include "platform/single_instance.h"

#include <windows.h>

namespace {

const wchar_t className[] = L"Vexlane";
const wchar_t windowTitle[] = L"Vexlane Распознавание автомобильных номеров";

LRESULT CALLBACK mainWindowProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_CLOSE:
        // The close box never ends the program.
        ::ShowWindow(window, SW_MINIMIZE);
        return 0;
    case WM_DESTROY:
        ::PostQuitMessage(0);
        return 0;
    default:
        return ::DefWindowProcW(window, message, wParam, lParam);
    }
}

} // namespace

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE, PWSTR, int showCommand)
{
    using namespace vx;
    ::SetErrorMode(3);

    std::unique_ptr<platform::NamedLock> instanceLock;
    if (!platform::acquireSingleInstance("VexlaneOnce", instanceLock)) {
        platform::raiseExistingInstance("Vexlane");
        return 1;
    }

    const auto baseDirectory = platform::folderOf(platform::executablePath());
    platform::setCurrentDirectory(baseDirectory);
    maintenance::installCrashCapture(baseDirectory);

    WNDCLASSW windowClass{};
    windowClass.style = CS_HREDRAW | CS_VREDRAW;
    windowClass.lpfnWndProc = mainWindowProcedure;
    windowClass.hInstance = instance;
    windowClass.hIcon = ::LoadIconW(instance, MAKEINTRESOURCEW(103));
    if (!windowClass.hIcon)
        windowClass.hIcon = ::LoadIconW(nullptr, IDI_APPLICATION);
    windowClass.hCursor = ::LoadCursorW(nullptr, IDC_ARROW);
    windowClass.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_WINDOW + 1);
    windowClass.lpszClassName = className;
    if (!::RegisterClassW(&windowClass)) {
        ::MessageBoxW(nullptr, L"Cannot register class", L"Error", MB_ICONERROR);
        return 0;
    }
    HWND window = ::CreateWindowExW(0, className, windowTitle, WS_OVERLAPPEDWINDOW, CW_USEDEFAULT, CW_USEDEFAULT,
                                    CW_USEDEFAULT, CW_USEDEFAULT, nullptr, nullptr, instance, nullptr);
    if (!window) {
        ::MessageBoxW(nullptr, L"Cannot create window", L"Error", MB_ICONERROR);
        return 0;
    }
    ::ShowWindow(window, showCommand);
    ::UpdateWindow(window);

    MSG message;
    while (::GetMessageW(&message, nullptr, 0, 0) > 0) {
        ::TranslateMessage(&message);
        ::DispatchMessageW(&message);
    }
    return static_cast<int>(message.wParam);
}
