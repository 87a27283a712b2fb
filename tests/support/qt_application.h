#pragma once
// The one QApplication of a Qt test program, made on first use. Every test
// file of a program asks here, so the order the tests run in doesn't matter.
#include <QApplication>
#include <chrono>
#include <functional>

namespace vx::test {

inline QApplication& qtApplication()
{
    if (auto* existing = qobject_cast<QApplication*>(QCoreApplication::instance()))
        return *existing;
    static int argc = 1;
    static char name[] = "vexlane_tests";
    static char* argv[] = {name, nullptr};
    // Never destroyed: tearing Qt down after main() returned, with windows
    // and threads of the tests still about, crashes at exit.
    static QApplication* application = new QApplication(argc, argv);
    return *application;
}

// Runs the event loop until `done` holds or `ms` have passed.
inline bool spinUntil(const std::function<bool()>& done, int ms = 2000)
{
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(ms);
    while (!done() && std::chrono::steady_clock::now() < end)
        QApplication::processEvents(QEventLoop::AllEvents, 20);
    return done();
}

} // namespace vx::test
