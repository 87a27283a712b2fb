// The manager's entry: one instance per session, the executable's folder as
// working directory, then the window and its event loop.
#include <QApplication>
#include <QSocketNotifier>
#include <memory>

#include "core/entry_steps.h"
#include "state/app_state.h"
#include "platform/end_request.h"
#include "ui/qt/main_window.h"

int main(int argc, char* argv[])
{
    using namespace vx;
    // A second start brings the first one to the front and leaves.
    core::AppState& state = core::appState();
    std::unique_ptr<platform::NamedLock> instanceLock;
    if (!core::enterProcess(state, instanceLock))
        return 1;

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
    core::leaveProcess(state);
    return result;
}
