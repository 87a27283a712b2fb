#include "liveview/live_fixture.h"

#include <QGuiApplication>
#include <cstdlib>

namespace vx::test {

void ensureGuiApplication()
{
    if (QGuiApplication::instance())
        return;
    setenv("QT_QPA_PLATFORM", "offscreen", 0);
    static int argc = 1;
    static char name[] = "liveview_tests";
    static char* argv[] = {name, nullptr};
    static QGuiApplication* app = new QGuiApplication(argc, argv);
    (void)app;
}

} // namespace vx::test
