#pragma once
// The manager's window: menu, the main dialog with its eight buttons, the two
// status panels, the tile area, the status bar and the tray icon. It binds
// the core's logic to Qt and holds none of its own.
#include <QCoreApplication>
#include <QMainWindow>
#include <QSystemTrayIcon>
#include <functional>
#include <map>
#include <memory>

#include "core/process_actions.h"
#include "state/app_state.h"
#include "core/window_placement.h"
#include "platform/window_endpoint.h"
#include "supervision/service_context.h"

class QLabel;
class QPushButton;
class QSocketNotifier;
class QTimer;
class QMenu;
class QAction;

namespace vx::liveview { struct LiveView; }

namespace vx::ui {

class TileView;

// Control identifiers of the main window and its dialog.
enum ControlId : int {
    idMenuFile = 10001, idMenuSettings = 10002, idMenuExit = 10003, idMenuOpenSystemLog = 10004,
    idMenuOpenRecogLog = 10005, idMenuHelpFile = 10006, idMenuAbout = 10007, idMenuHelp = 10008,
    idTrayExit = 11003, idTrayAutorun = 11004,
    idStartAll = 1036, idStopAll = 1037, idMessengers = 1038, idRecognition = 1039,
    idServicePanel = 1040, idTileArea = 1041, idJournal = 1042, idStreamPanel = 1043,
    idControl = 1044, idLists = 1045, idWatch = 1087,
    idStatusBar = 11111,
};

class MainWindow : public QMainWindow {
    Q_OBJECT
public:
    explicit MainWindow(core::AppState& state, QWidget* parent = nullptr);
    ~MainWindow() override;

    // The create handler: builds the window's parts and starts the tick.
    // False when the window could not be set up (the caller then ends).
    bool create();
    // The teardown: tray icon away, shuttingDown set, a pause for the
    // timer thread, then the event loop is told to end.
    void teardown();
    // An end request from outside (SIGTERM, SIGINT): the open message boxes
    // and dialogs close as if cancelled, then the teardown runs from the
    // event loop, as the menu's "Выход" would.
    void endOnRequest();
    bool tornDown() const { return tornDown_; }

    core::ProcessActions& actions() { return actions_; }
    // The services' context this window's commands and timer thread use.
    supervision::ServiceContext& services() { return *services_; }
    // Control lookup for tests: the widget with a control identifier.
    QWidget* control(int id) const;
    QAction* menuAction(int id) const;
    QSystemTrayIcon* trayIcon() const { return tray_; }
    // Sets how long the teardown waits for the background threads.
    void setTeardownPause(int ms) { teardownPauseMs_ = ms; }
    // What the teardown ends with: telling the event loop to end. Tests that
    // go on using the application after a teardown put in their own.
    void setQuitAction(std::function<void()> quit) { quit_ = std::move(quit); }

    void onMenuCommand(int id);
    void onDialogCommand(int id);
    void updateStatusPanels();

protected:
    void closeEvent(QCloseEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void changeEvent(QEvent* event) override;
    void moveEvent(QMoveEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    // Main config, logs, threshold and control config of the create handler;
    // false when the main config failed (message shown, teardown posted).
    bool runConfigSteps();
    void buildMainMenu();
    void buildTray();
    QWidget* buildMainDialog();
    void startTick();
    void placeWindow();
    void layoutTiles();
    // Draws the tile area on this thread and shows it at once; -1 keeps the
    // zone's size.
    void redrawTiles(int width, int height);
    void onTileHover(int x, int y);
    void onTileClick(int x, int y);
    // The edit entry point of a click on the tile area.
    void editCamera(int x, int y);
    void rememberGeometry();
    void openEndpoint();
    void onTimerTick();
    void restoreFromTray();

    core::AppState& state_;
    core::ProcessActions actions_;
    std::shared_ptr<supervision::ServiceContext> services_;
    std::map<int, QWidget*> controls_;
    std::map<int, QAction*> menuActions_;
    TileView* tileArea_ = nullptr;
    // Shared with the timer thread, which draws the tiles every second.
    std::shared_ptr<liveview::LiveView> liveView_;
    QMenu* trayMenu_ = nullptr;
    QSystemTrayIcon* tray_ = nullptr;
    QTimer* tickTimer_ = nullptr;
    QTimer* geometryTimer_ = nullptr;   // fires once moves and resizes have come to rest
    core::GeometryWatch geometryWatch_;
    std::unique_ptr<platform::WindowEndpoint> endpoint_;
    QSocketNotifier* endpointNotifier_ = nullptr;
    int teardownPauseMs_ = 1500;
    std::function<void()> quit_ = [] { QCoreApplication::exit(0); };
    bool tornDown_ = false;
};

} // namespace vx::ui
