// The settings migration as the create handler offers it, answered the way
// an operator would: OK with the folders box ticked or not, or Cancel.
#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QLabel>
#include <QPushButton>
#include <QTimer>

#include "support/captured_stderr.h"
#include "support/qt_application.h"
#include "support/temp_dir.h"
#include "ui/qt/main_window.h"
#include "ui/qt/qt_text.h"
#include "ui/qt/settings_migration_window.h"

using namespace vx;
using namespace vx::ui;

namespace {

namespace fs = std::filesystem;

struct Answer {
    const char* name;
    bool ok;
    bool ticked;
};

class SettingsMigrationWindowTest : public ::testing::TestWithParam<Answer> {};

TEST_P(SettingsMigrationWindowTest, CreateHandlerOffersTheEarlierSettings)
{
    test::qtApplication();
    test::RuntimeSandbox sandbox;
    test::TempDir root;
    const fs::path earlier = root.path() / "Vexlane 1.0", current = root.path() / "Vexlane 2.0";
    for (const fs::path& folder : {earlier / "configs", earlier / "logs", current / "configs"})
        fs::create_directories(folder);
    const std::string old = earlier.string();
    const std::string earlierMain = "{\"systemLogPath\":\"" + old + "/logs\",\"recogLogPath\":\"" + old +
                                    "/logs\",\"reportsPath\":\"" + old + "/reports\",\"videoPath\":\"" + old +
                                    "/videos\",\"videoStreams\":[],\"autoRunStreams\":[]}";
    test::writeFileBytes(earlier / "configs" / "vx_main_config.json", earlierMain);
    test::writeFileBytes(earlier / "configs" / "receiversamples.json", "[]");

    // The window's timer thread keeps its state: it outlives the test.
    auto* state = new core::AppState;
    state->baseDirectory = current;
    state->previousInstallPath = old;
    MainWindow window(*state);
    window.setTeardownPause(0);
    window.setQuitAction([] {});

    const Answer answer = GetParam();
    QString title, text;
    bool tickedAtFirst = false;
    QTimer operatorHand;
    operatorHand.setInterval(20);
    QObject::connect(&operatorHand, &QTimer::timeout, [&] {
        auto* dialog = dynamic_cast<SettingsMigrationWindow*>(QApplication::activeModalWidget());
        if (!dialog)
            return;
        operatorHand.stop();
        title = dialog->windowTitle();
        text = dialog->text->text();
        tickedAtFirst = dialog->moveFolders->isChecked();
        if (!answer.ticked)
            dialog->moveFolders->click();
        (answer.ok ? dialog->ok : dialog->cancel)->click();
    });
    operatorHand.start();
    ASSERT_TRUE(window.create());
    operatorHand.stop();

    EXPECT_EQ(title, literal("Помощь в переносе настроек из последней запущенной программы"));
    EXPECT_TRUE(text.contains(QString::fromStdString(old))) << text.toStdString();
    EXPECT_TRUE(tickedAtFirst);
    EXPECT_EQ(fs::exists(current / "configs" / "receiversamples.json"), answer.ok);
    EXPECT_EQ(state->migrateFolders, answer.ok && answer.ticked);
    const std::string saved = test::readFileBytes(current / "configs" / "vx_main_config.json");
    if (answer.ok && !answer.ticked) {
        // The earlier file as it came, folders and all.
        EXPECT_EQ(saved, earlierMain);
        EXPECT_EQ(state->liveMainConfig.videoPath, old + "/videos");
    } else {
        // Saved with this installation's folders (Cancel: the defaults of
        // a new installation).
        const std::string base = current.string();
        for (const std::string& line :
             {"\t\"systemLogPath\":\"" + base + "/logs\",\n", "\t\"recogLogPath\":\"" + base + "/logs\",\n",
              "\t\"reportsPath\":\"" + base + "/reports\",\n", "\t\"videoPath\":\"" + base + "/videos\",\n"})
            EXPECT_NE(saved.find(line), std::string::npos) << line << " in\n" << saved;
    }
    state->shuttingDown = true;
}

INSTANTIATE_TEST_SUITE_P(Answers, SettingsMigrationWindowTest,
                         ::testing::Values(Answer{"OkTicked", true, true}, Answer{"OkUnticked", true, false},
                                           Answer{"Cancel", false, true}),
                         [](const auto& info) { return std::string(info.param.name); });

TEST(SettingsMigrationWindow, NoEarlierInstallationShowsNothing)
{
    test::qtApplication();
    core::AppState state;
    state.migrateFolders = true;
    offerSettingsMigration(nullptr, state);   // would block if it showed the dialog
    EXPECT_FALSE(state.migrateFolders);
}

} // namespace
