// The settings migration as the create handler offers it, answered OK with
// the folders box left ticked: the earlier configs are copied and the main
// config is saved with this installation's folders. Cancel and the box
// unticked are the Windows dialog's and the manager's own tests.
#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QPushButton>
#include <QTimer>

#include "support/captured_stderr.h"
#include "support/qt_application.h"
#include "support/temp_dir.h"
#include "ui/qt/main_window.h"
#include "ui/qt/settings_migration_window.h"

using namespace vx;
namespace fs = std::filesystem;

TEST(SettingsMigrationWindow, OkWithTheBoxTickedCopiesAndTakesThisInstallationsFolders)
{
    test::qtApplication();
    test::RuntimeSandbox sandbox;
    test::TempDir root;
    const fs::path earlier = root.path() / "Vexlane 1.0", current = root.path() / "Vexlane 2.0";
    for (const fs::path& folder : {earlier / "configs", earlier / "logs", current / "configs"})
        fs::create_directories(folder);
    const std::string old = earlier.string();
    test::writeFileBytes(earlier / "configs" / "vx_main_config.json",
                         "{\"systemLogPath\":\"" + old + "/logs\",\"videoPath\":\"" + old +
                             "/videos\",\"videoStreams\":[],\"autoRunStreams\":[]}");
    test::writeFileBytes(earlier / "configs" / "receiversamples.json", "[]");

    // The window's timer thread keeps its state: it outlives the test.
    auto* state = new core::AppState;
    state->baseDirectory = current;
    state->previousInstallPath = old;
    ui::MainWindow window(*state);
    window.setTeardownPause(0);
    window.setQuitAction([] {});
    bool tickedAtFirst = false;
    QTimer operatorHand;
    operatorHand.setInterval(20);
    QObject::connect(&operatorHand, &QTimer::timeout, [&] {
        auto* dialog = dynamic_cast<ui::SettingsMigrationWindow*>(QApplication::activeModalWidget());
        if (!dialog)
            return;
        operatorHand.stop();
        tickedAtFirst = dialog->moveFolders->isChecked();
        dialog->ok->click();
    });
    operatorHand.start();
    ASSERT_TRUE(window.create());
    operatorHand.stop();

    EXPECT_TRUE(tickedAtFirst);
    EXPECT_TRUE(fs::exists(current / "configs" / "receiversamples.json"));
    EXPECT_TRUE(state->migrateFolders);
    const std::string saved = test::readFileBytes(current / "configs" / "vx_main_config.json");
    const std::string base = current.string();
    for (const std::string& line :
         {"\t\"systemLogPath\":\"" + base + "/logs\",\n", "\t\"recogLogPath\":\"" + base + "/logs\",\n",
          "\t\"reportsPath\":\"" + base + "/reports\",\n", "\t\"videoPath\":\"" + base + "/videos\",\n"})
        EXPECT_NE(saved.find(line), std::string::npos) << line << " in\n" << saved;
    state->shuttingDown = true;
}
