// The manager's entry: one instance per session, the executable's folder as
// working directory, then the window and its event loop.
#include <QApplication>
#include <memory>

#include "core/state/app_state.h"
#include "core/version.h"
#include "platform/named_lock.h"
#include "platform/paths.h"
#include "platform/single_instance.h"
#include "ui/main_window.h"

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
    state.versionText = core::versionText();

    QApplication app(argc, argv);
    app.setQuitOnLastWindowClosed(false);
    ui::MainWindow window(state);
    if (!window.create())
        return 0;
    window.show();
    const int result = app.exec();
    return result;
}
