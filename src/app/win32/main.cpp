// The manager's Windows entry: no system dialogs on critical errors, one
// instance per session, the executable's folder as working directory, the
// crash capture, then the window and its message loop.
#include <windows.h>

#include <memory>

#include "core/entry_steps.h"
#include "state/app_state.h"
#include "ui/win32/main_window.h"

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE, PWSTR, int showCommand)
{
    using namespace vx;
    ::SetErrorMode(3);

    // A second start brings the first one to the front and leaves.
    core::AppState& state = core::appState();
    std::unique_ptr<platform::NamedLock> instanceLock;
    if (!core::enterProcess(state, instanceLock))
        return 1;

    if (!ui::win32::MainWindow::registerClass(instance))
        return 0;
    ui::win32::MainWindow window(state, instance);
    HWND handle = window.create();
    if (!handle)
        return 0;
    ::ShowWindow(handle, showCommand);
    ::UpdateWindow(handle);

    MSG message{};
    BOOL got;
    while ((got = ::GetMessageW(&message, nullptr, 0, 0)) != 0) {
        if (got == -1)
            ::ExitProcess(1);
        ::TranslateMessage(&message);
        ::DispatchMessageW(&message);
    }
    core::leaveProcess(state);
    return static_cast<int>(message.wParam);
}
