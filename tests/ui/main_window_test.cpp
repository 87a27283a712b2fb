// The main window as the operator meets it, on the offscreen platform.
#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QCloseEvent>
#include <QMouseEvent>
#include <QPushButton>
#include <QStatusBar>
#include <QTimer>
#include <memory>

#include "platform/process.h"
#include "support/captured_stderr.h"
#include "support/qt_application.h"
#include "support/temp_dir.h"
#include "support/time_scale.h"
#include "ui/qt/main_window.h"
#include "ui/qt/qt_text.h"
#include "ui/qt/settings_migration_window.h"
#include "ui/qt/tile_view.h"

using namespace vx;
using namespace vx::ui;
using vx::test::spinUntil;
namespace fs = std::filesystem;

namespace {

QPushButton* button(MainWindow& window, int id) { return qobject_cast<QPushButton*>(window.control(id)); }

class MainWindowTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        test::qtApplication();
        std::filesystem::create_directories(base_.path() / "configs");
        // The window's timer thread is detached and keeps a reference to
        // its state, so each test's state lives on after the test.
        state_ = new core::AppState;
        state_->baseDirectory = base_.path();
        state_->ConfigDirectory = base_.path().string() + "/configs";
    }
    // A created window over the test's state, quitting nowhere.
    MainWindow& created()
    {
        window_ = std::make_unique<MainWindow>(*state_);
        window_->setTeardownPause(0);
        window_->setQuitAction([] {});
        EXPECT_TRUE(window_->create());
        return *window_;
    }
    test::RuntimeSandbox sandbox_;
    test::TempDir base_;
    core::AppState* state_ = nullptr;
    std::unique_ptr<MainWindow> window_;
};

} // namespace

TEST_F(MainWindowTest, ShowsTheTitleButtonsMenusAndZoneRunsTheButtonsAndOnlyTheMenuEnds)
{
    MainWindow& window = created();
    core::AppState& state = *state_;
    EXPECT_EQ(window.windowTitle(), literal("Vexlane Распознавание автомобильных номеров"));
    const std::vector<std::pair<int, const char*>> buttons{
        {idStartAll, "Запустить все"}, {idStopAll, "Остановить все"}, {idRecognition, "Анализ"},
        {idWatch, "Контроль"},         {idControl, "Управление"},     {idLists, "Списки"},
        {idMessengers, "Мессенджеры"}, {idJournal, "Журнал"}};
    for (const auto& [id, caption] : buttons) {
        ASSERT_NE(button(window, id), nullptr) << id;
        EXPECT_EQ(button(window, id)->text(), literal(caption)) << id;
        EXPECT_FALSE(button(window, id)->icon().isNull()) << id;
    }
    EXPECT_FALSE(window.control(idServicePanel)->isEnabled());

    const std::vector<std::pair<int, const char*>> menu{
        {idMenuOpenSystemLog, "Открыть папку системного журнала"},
        {idMenuOpenRecogLog, "Открыть папку журнала распознавания"},
        {idMenuSettings, "Настройки"}, {idMenuExit, "Выход"}, {idMenuHelpFile, "Помощь"},
        {idMenuAbout, "О программе"}, {idMenuFile, "Файл"}, {idMenuHelp, "Справка"},
        {idTrayAutorun, "Автозагрузка"}, {idTrayExit, "Выход"}};
    for (const auto& [id, label] : menu) {
        ASSERT_NE(window.menuAction(id), nullptr) << id;
        EXPECT_EQ(window.menuAction(id)->text(), literal(label)) << id;
    }
    EXPECT_TRUE(state.createFinished);

    // The tile area shows the zone, and a click clears the status.
    auto* area = qobject_cast<TileView*>(window.control(idTileArea));
    ASSERT_NE(area, nullptr);
    ASSERT_FALSE(area->zone().isNull());
    EXPECT_GE(area->zone().width(), 640);
    EXPECT_GE(area->zone().height(), 480);
    EXPECT_EQ(area->zone().width() % 4, 0);
    state.status.set("busy");
    window.statusBar()->showMessage("busy");
    QMouseEvent press(QEvent::MouseButtonPress, QPointF(2, 2), QPointF(area->mapToGlobal(QPoint(2, 2))), Qt::LeftButton,
                      Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(area, &press);
    EXPECT_EQ(state.status.get(), "");
    EXPECT_TRUE(window.statusBar()->currentMessage().isEmpty());

    // The global commands reach the real service workers; no process is
    // looked for, started or ended from here.
    window.services().process.find = [](const std::string&) { return 0L; };
    window.services().process.start = [](const platform::ProcessStartInfo&) { return nullptr; };
    window.services().sleep = [](int) {};
    int saves = 0;
    window.actions().saveMainConfig = [&] { ++saves; return true; };
    button(window, idStartAll)->click();
    EXPECT_EQ(window.statusBar()->currentMessage(), literal("Запущено всё!"));
    button(window, idStopAll)->click();
    EXPECT_FALSE(state.liveMainConfig.startStatus);
    EXPECT_EQ(saves, 2);
    state.pendingTasks.waitAll();

    // The close box minimises; only the menu ends.
    window.show();
    QCloseEvent close;
    QApplication::sendEvent(&window, &close);
    EXPECT_FALSE(close.isAccepted());
    EXPECT_TRUE(window.isMinimized());
    EXPECT_TRUE(state.minimised);
    EXPECT_FALSE(state.shuttingDown);
    window.showNormal();
    EXPECT_FALSE(state.minimised);
    window.menuAction(idMenuExit)->trigger();
    EXPECT_TRUE(state.shuttingDown);
}

TEST_F(MainWindowTest, OnlyTheOperatorsMoveOrResizeIsRemembered)
{
    state_->liveMainConfig.wWindow = 900;
    state_->liveMainConfig.hWindow = 700;
    MainWindow& window = created();
    const config::MainConfig& live = state_->liveMainConfig;
    int saves = 0;
    window.actions().saveMainConfig = [&] { ++saves; return true; };
    // The first show and the placement from the config move and size the
    // window; none of it is the operator's.
    window.show();
    spinUntil([] { return false; }, 1200);
    EXPECT_EQ(saves, 0);

    window.move(window.x() + 37, window.y() + 21);
    ASSERT_TRUE(spinUntil([&] { return saves == 1; }, test::scaledMs(5000)));
    EXPECT_EQ(live.xWindow, window.frameGeometry().x());
    EXPECT_EQ(live.yWindow, window.frameGeometry().y());
    window.resize(window.width() + 40, window.height() + 30);
    ASSERT_TRUE(spinUntil([&] { return saves == 2; }, test::scaledMs(5000)));
    EXPECT_EQ(live.wWindow, window.frameGeometry().width());
    EXPECT_EQ(live.hWindow, window.frameGeometry().height());
    spinUntil([] { return false; }, 600);
    EXPECT_EQ(saves, 2) << "one save per move or resize";
    state_->shuttingDown = true;
}

// The settings migration as the create handler offers it, answered OK with
// the folders box left ticked: the earlier configs are copied and the main
// config is saved with this installation's folders. Cancel and the box
// unticked are the Windows dialog's and the manager's own tests.
TEST_F(MainWindowTest, MigrationOkWithTheBoxTickedCopiesAndTakesThisInstallationsFolders)
{
    const fs::path earlier = base_.path() / "Vexlane 1.0";
    for (const fs::path& folder : {earlier / "configs", earlier / "logs"})
        fs::create_directories(folder);
    const std::string old = earlier.string();
    test::writeFileBytes(earlier / "configs" / "vx_main_config.json",
                         "{\"systemLogPath\":\"" + old + "/logs\",\"videoPath\":\"" + old +
                             "/videos\",\"videoStreams\":[],\"autoRunStreams\":[]}");
    test::writeFileBytes(earlier / "configs" / "receiversamples.json", "[]");
    state_->previousInstallPath = old;
    bool tickedAtFirst = false;
    QTimer operatorHand;
    operatorHand.setInterval(20);
    QObject::connect(&operatorHand, &QTimer::timeout, [&] {
        auto* dialog = dynamic_cast<SettingsMigrationWindow*>(QApplication::activeModalWidget());
        if (!dialog)
            return;
        operatorHand.stop();
        tickedAtFirst = dialog->moveFolders->isChecked();
        dialog->ok->click();
    });
    operatorHand.start();
    created();
    operatorHand.stop();

    EXPECT_TRUE(tickedAtFirst);
    EXPECT_TRUE(fs::exists(base_.path() / "configs" / "receiversamples.json"));
    EXPECT_TRUE(state_->migrateFolders);
    const std::string saved = test::readFileBytes(base_.path() / "configs" / "vx_main_config.json");
    const std::string base = base_.path().string();
    for (const std::string& line :
         {"\t\"systemLogPath\":\"" + base + "/logs\",\n", "\t\"recogLogPath\":\"" + base + "/logs\",\n",
          "\t\"reportsPath\":\"" + base + "/reports\",\n", "\t\"videoPath\":\"" + base + "/videos\",\n"})
        EXPECT_NE(saved.find(line), std::string::npos) << line << " in\n" << saved;
    state_->shuttingDown = true;
}
