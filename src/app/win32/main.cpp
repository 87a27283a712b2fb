// The manager's Windows entry: no system dialogs on critical errors, one
// instance per session, the executable's folder as working directory, the
// crash capture, then the window and its message loop.
#include <windows.h>

#include <memory>
#include <mutex>

#include "core/startup.h"
#include "core/version.h"
#include "maintenance/crash_capture.h"
#include "maintenance/system_log.h"
#include "platform/named_lock.h"
#include "platform/paths.h"
#include "platform/single_instance.h"
#include "platform/user_data.h"
#include "state/app_state.h"
#include "ui/win32/main_window.h"

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE, PWSTR, int showCommand)
{
    using namespace vx;
    ::SetErrorMode(3);

    // A second start brings the first one to the front and leaves.
    std::unique_ptr<platform::NamedLock> instanceLock;
    if (!platform::acquireSingleInstance("VexlaneOnce", instanceLock)) {
        platform::raiseExistingInstance("Vexlane");
        return 1;
    }

    core::AppState& state = core::appState();
    state.baseDirectory = platform::folderOf(platform::executablePath());
    platform::setCurrentDirectory(state.baseDirectory);
    // From here on a crash leaves dumps\VexlaneDump.dmp and exit code 1.
    maintenance::installCrashCapture(state.baseDirectory, core::narrowPath(state.baseDirectory));
    state.versionText = core::versionText();
    core::checkSettingsMigrationStep(state, platform::userDataDirectory());

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
    // "Close" is the last line of the system log; then the system log and
    // the performance log go, in that order, then the video quota object.
    maintenance::closeLogs();
    {
        std::lock_guard<std::mutex> lock(state.videoQuotaMutex);
        state.videoQuota.reset();
    }
    return static_cast<int>(message.wParam);
}
