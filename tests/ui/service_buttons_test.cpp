// "Запустить все" and "Остановить все" on a throw-away installation: the
// buttons reach the real stand-ins, and leaving the manager leaves them
// running. Lookups see only this installation's processes.
#include <gtest/gtest.h>

#include <QApplication>
#include <QPushButton>
#include <thread>

#include "config/control_config.h"
#include "config/messenger_config.h"
#include "config/recognition_config.h"
#include "supervision/service_test_support.h"
#include "support/installation.h"
#include "support/qt_application.h"
#include "ui/qt/main_window.h"

using namespace vx;

namespace {

TEST(ServiceButtons, StartAllStartsTheServicesStopAllEndsThemExitLeavesThem)
{
    test::qtApplication();
    test::RuntimeSandbox sandbox;
    test::Installation install;
    const std::filesystem::path folder = install.folder();
    std::filesystem::create_directories(install.configs());
    const std::string configs = install.configs().string();

    // The window's timer thread is detached and keeps its state: it lives on.
    auto* state = new core::AppState;
    state->baseDirectory = folder;
    config::ControlSrvConfig control;
    control.port = test::freeLoopbackPort();
    config::saveControlGlobal(configs, control);
    state->recognitionConfig.port = test::freeLoopbackPort();
    config::saveRecogGlobal(configs, state->recognitionConfig);
    state->messengersConfig.port = test::freeLoopbackPort();
    state->messengersConfig.on = true;
    config::saveMessengers(configs, state->messengersConfig);

    ui::MainWindow window(*state);
    window.setTeardownPause(0);
    window.setQuitAction([] {});
    ASSERT_TRUE(window.create());
    window.services().process.find = [folder](const std::string& name) { return test::findProcessIn(folder, name); };
    window.services().startWatchMs = 800;
    auto running = [&](const char* name) { return test::findProcessIn(folder, name) != 0; };
    auto allRunning = [&] { return running("vxInference") && running("vxControl") && running("vxMes"); };
    auto noneRunning = [&] { return !running("vxInference") && !running("vxControl") && !running("vxMes"); };

    qobject_cast<QPushButton*>(window.control(ui::idStartAll))->click();
    state->pendingTasks.waitAll();
    EXPECT_TRUE(test::waitFor(allRunning, 3000));

    qobject_cast<QPushButton*>(window.control(ui::idStopAll))->click();
    state->pendingTasks.waitAll();
    EXPECT_TRUE(test::waitFor(noneRunning, 3000));

    qobject_cast<QPushButton*>(window.control(ui::idStartAll))->click();
    state->pendingTasks.waitAll();
    window.teardown();
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    EXPECT_TRUE(allRunning());

    EXPECT_TRUE(test::endProcessesIn(folder, {"vxInference", "vxControl", "vxMes"}));
}

} // namespace
