// The manager's entry: one instance per session, the executable's folder as
// working directory, then the window and its event loop.
#include <QApplication>
#include <QSocketNotifier>
#include <memory>

#include "state/app_state.h"
#include "core/startup.h"
#include "core/version.h"
#include "maintenance/crash_capture.h"
#include "maintenance/system_log.h"
#include "platform/end_request.h"
#include "platform/named_lock.h"
#include "platform/paths.h"
#include "platform/single_instance.h"
#include "platform/user_data.h"
#include "ui/qt/main_window.h"

int main(int argc, char* argv[])
{
    using namespace vx;
    // A second start brings the first one to the front and leaves.
    std::unique_ptr<platform::NamedLock> instanceLock;
    if (!platform::acquireSingleInstance("VexlaneOnce", instanceLock)) {
        platform::raiseExistingInstance("Vexlane");
        return 1;
    }

    core::AppState& state = core::appState();
    state.baseDirectory = platform::folderOf(platform::executablePath());
    platform::setCurrentDirectory(state.baseDirectory);
    // From here on a crash leaves dumps/VexlaneDump.dmp and exit code 1.
    maintenance::installCrashCapture(state.baseDirectory, core::narrowPath(state.baseDirectory));
    state.versionText = core::versionText();
    // Started from another folder than last time: the create handler offers
    // the earlier installation's settings.
    core::checkSettingsMigrationStep(state, platform::userDataDirectory());

    QApplication app(argc, argv);
    app.setQuitOnLastWindowClosed(false);
    ui::MainWindow window(state);
    // SIGTERM or SIGINT from an operator closes whatever box or dialog is
    // open and posts the same teardown as the menu's "Выход", so a `kill`
    // ends the manager as cleanly as the menu.
    // The handler is in place before the window is set up: a request that
    // comes meanwhile waits in the pipe for the event loop.
    std::unique_ptr<QSocketNotifier> endNotifier;
    if (const int fd = platform::endRequestDescriptor(); fd >= 0) {
        endNotifier = std::make_unique<QSocketNotifier>(fd, QSocketNotifier::Read);
        QObject::connect(endNotifier.get(), &QSocketNotifier::activated, &window, [&window] {
            platform::drainEndRequests();
            window.endOnRequest();
        });
    }
    if (!window.create())
        return 0;
    // A request that came while the create handler had a message box open
    // may have run the teardown already; the loop then has nothing to do.
    int result = 0;
    if (!window.tornDown()) {
        window.show();
        result = app.exec();
    }
    // "Close" is the last line of the system log; then the system log and
    // the performance log go, in that order.
    maintenance::closeLogs();
    {
        // Then the video quota object, under its lock: a pass may be running.
        std::lock_guard<std::mutex> lock(state.videoQuotaMutex);
        state.videoQuota.reset();
    }
    return result;
}
