#include "ui/qt/main_window.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDialog>
#include <QDesktopServices>
#include <QGridLayout>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenuBar>
#include <QMessageBox>
#include <QPainter>
#include <QPixmap>
#include <QPointer>
#include <QPushButton>
#include <QScreen>
#include <QSocketNotifier>
#include <QStatusBar>
#include <QTimer>
#include <QUrl>
#include <QVBoxLayout>
#include <chrono>
#include <thread>

#include <tbb/global_control.h>

#include "core/create_steps.h"
#include "core/dialog_commands.h"
#include "core/main_commands.h"
#include "core/service_wiring.h"
#include "core/settings_commands.h"
#include "core/startup.h"
#include "core/status_panels.h"
#include "core/stream_wiring.h"
#include "core/window_placement.h"
#include "config/text_codec.h"
#include "supervision/stream_channel.h"
#include "liveview/interface_images.h"
#include "liveview/live_view.h"
#include "liveview/tile_hover.h"
#include "liveview/tile_pictures.h"
#include "ui/qt/zone_image.h"
#include "maintenance/system_log.h"
#include "ui/qt/edit_hooks.h"
#include "ui/qt/message_boxes.h"
#include "ui/qt/qt_text.h"
#include "ui/qt/white_list_windows.h"
#include "ui/qt/settings_migration_window.h"
#include "ui/qt/settings_windows.h"
#include "ui/qt/tile_view.h"

namespace vx::ui {

namespace {

const char* const windowTitleText = "Vexlane Распознавание автомобильных номеров";
const char* const windowClassName = "Vexlane";

struct DialogButton {
    int id;
    const char* caption;
    const char* picture;
};

const DialogButton dialogButtons[] = {
    {idStartAll, "Запустить все", "button1.png"}, {idStopAll, "Остановить все", "button2.png"},
    {idRecognition, "Анализ", "button3.png"},     {idWatch, "Контроль", "button4.png"},
    {idControl, "Управление", "button5.png"},     {idLists, "Списки", "button6.png"},
    {idMessengers, "Мессенджеры", "button7.png"}, {idJournal, "Журнал", "button8.png"},
};

QString imagePath(const QString& name)
{
    return QCoreApplication::applicationDirPath() + "/images/" + name;
}

// Panels show CR LF separated lines; Qt wants a bare line feed.
QString panelText(const std::string& cp1251)
{
    return toQString(cp1251).replace("\r\n", "\n");
}

std::vector<core::Rect> monitorWorkAreas()
{
    std::vector<core::Rect> areas;
    for (QScreen* screen : QGuiApplication::screens()) {
        const QRect r = screen->availableGeometry();
        areas.push_back({r.x(), r.y(), r.width(), r.height()});
    }
    return areas;
}

// What the main commands show and open, bound to this window.
core::MainCommandHooks commandHooks(MainWindow* window)
{
    core::MainCommandHooks hooks = core::systemCommandHooks();
    // "Настройки" (10002): onMenuCommand adds the settings command.
    hooks.destroyWindow = [window] { window->teardown(); };
    auto open = [](const std::filesystem::path& path) {
        QDesktopServices::openUrl(QUrl::fromLocalFile(QString::fromStdString(path.string())));
    };
    hooks.openFolder = open;
    hooks.openFile = open;
    hooks.showMessage = [window](const std::string& title, const std::string& text) {
        QMessageBox::critical(window, toQString(title), toQString(text));
    };
    hooks.showAbout = [window](const std::string& text) {
        QMessageBox::about(window, literal("О программе"), toQString(text));
    };
    return hooks;
}

// The settings commands' dialogs and hooks, bound to this window.
core::SettingsHooks settingsHooks(MainWindow* window, core::AppState& state)
{
    core::SettingsHooks hooks = core::systemSettingsHooks(state);
    hooks.dialogs = settingsDialogs(window);
    hooks.showMessage = [window](const std::string& title, const std::string& text) {
        QMessageBox::critical(window, toQString(title), toQString(text));
    };
    return hooks;
}

} // namespace

MainWindow::MainWindow(core::AppState& state, QWidget* parent) : QMainWindow(parent), state_(state)
{
    actions_.launch = core::launchAsync;
    actions_.saveMainConfig = [this] { return core::saveMainConfig(state_); };
    services_ = supervision::makeServiceContext(state_);
    liveView_ = std::make_shared<liveview::LiveView>();
    core::connectServiceActions(actions_, services_, state_);
    core::connectStreamActions(actions_, supervision::makeStreamControl(state_));
    setWindowTitle(literal(windowTitleText));
    setWindowIcon(QIcon(imagePath("vexlane.png")));
}

MainWindow::~MainWindow() = default;

QWidget* MainWindow::control(int id) const
{
    auto it = controls_.find(id);
    return it == controls_.end() ? nullptr : it->second;
}

QAction* MainWindow::menuAction(int id) const
{
    auto it = menuActions_.find(id);
    return it == menuActions_.end() ? nullptr : it->second;
}

bool MainWindow::create()
{
    offerSettingsMigration(this, state_);
    buildMainMenu();
    buildTray();
    QWidget* dialog = buildMainDialog();
    if (!dialog)
        return false;
    setCentralWidget(dialog);
    statusBar()->setSizeGripEnabled(true);
    controls_[idStatusBar] = statusBar();
    // A status text may be set on any thread; the bar shows it on this one.
    QPointer<MainWindow> self(this);
    state_.status.setShown([self](const std::string& text) {
        if (QCoreApplication* app = QCoreApplication::instance())
            QMetaObject::invokeMethod(
                app, [self, text] { if (self) self->statusBar()->showMessage(toQString(text)); },
                Qt::QueuedConnection);
    });
    liveview::loadInterfaceImages(*liveView_, std::filesystem::path((QCoreApplication::applicationDirPath() + "/images").toStdString()),
                                  state_.status);
    if (tray_)
        tray_->show();

    if (!runConfigSteps())
        return true;   // the posted teardown ends the program from the event loop
    core::initServiceClients(*services_);

    openEndpoint();
    startTick();
    {
        // Caps the scheduler's parallelism while the window is being set up.
        tbb::global_control cap(tbb::global_control::max_allowed_parallelism,
                                std::max<size_t>(std::thread::hardware_concurrency(), 16));
    }
    // The finished zone travels to the window's thread inside a QImage made
    // here, on the timer thread; the tile area is reached only there, and
    // only while it still exists.
    QPointer<TileView> tileArea(tileArea_);
    const platform::WindowHandle hostWindow = endpoint_ ? endpoint_->handle() : 0;
    core::startTimerThread(state_, services_, liveView_, hostWindow, [tileArea](liveview::ZonePicture zone) {
        QCoreApplication* app = QCoreApplication::instance();
        if (!app)
            return;
        QMetaObject::invokeMethod(
            app,
            [tileArea, image = zoneImage(zone.pixels), serial = zone.serial] {
                if (tileArea)
                    tileArea->showZone(image, serial);
            },
            Qt::QueuedConnection);
    });
    VX_LOG(maintenance::logTrace, "OnCreate ok!");

    placeWindow();
    layoutTiles();
    state_.createFinished = true;
    return true;
}

bool MainWindow::runConfigSteps()
{
    core::StartupHooks hooks;
    hooks.showMessage = [this](const std::string& title, const std::string& text) {
        QMessageBox::critical(this, toQString(title), toQString(text));
    };
    // Posted, not run here: the teardown comes from the event loop.
    hooks.postTeardown = [this] { QTimer::singleShot(0, this, [this] { teardown(); }); };
    hooks.setAutorun = core::systemCommandHooks().setAutorun;
    hooks.setAutorunTick = [this](bool ticked) {
        if (QAction* autorun = menuAction(idTrayAutorun))
            autorun->setChecked(ticked);
    };
    return core::runConfigSteps(state_, hooks);
}

void MainWindow::buildMainMenu()
{
    QMenu* file = menuBar()->addMenu(literal("Файл"));
    auto add = [this](QMenu* menu, int id, const char* text) {
        QAction* action = menu->addAction(literal(text));
        menuActions_[id] = action;
        connect(action, &QAction::triggered, this, [this, id] { onMenuCommand(id); });
    };
    add(file, idMenuOpenSystemLog, "Открыть папку системного журнала");
    add(file, idMenuOpenRecogLog, "Открыть папку журнала распознавания");
    add(file, idMenuSettings, "Настройки");
    add(file, idMenuExit, "Выход");
    QMenu* help = menuBar()->addMenu(literal("Справка"));
    add(help, idMenuHelpFile, "Помощь");
    add(help, idMenuAbout, "О программе");
    menuActions_[idMenuFile] = file->menuAction();
    menuActions_[idMenuHelp] = help->menuAction();
}

void MainWindow::buildTray()
{
    trayMenu_ = new QMenu(this);
    QAction* autorun = trayMenu_->addAction(literal("Автозагрузка"));
    autorun->setCheckable(true);
    autorun->setChecked(state_.liveMainConfig.autoRunManager);
    menuActions_[idTrayAutorun] = autorun;
    // The tick turns with the click; it follows the flag again whenever the
    // menu opens, so a failed change shows there only then.
    connect(autorun, &QAction::triggered, this,
            [this] { core::toggleTrayAutorun(state_, actions_, commandHooks(this)); });
    connect(trayMenu_, &QMenu::aboutToShow, this,
            [this, autorun] { autorun->setChecked(state_.liveMainConfig.autoRunManager); });
    QAction* exit = trayMenu_->addAction(literal("Выход"));
    menuActions_[idTrayExit] = exit;
    // The tray's exit posts the teardown rather than running it inside the
    // menu's own loop.
    connect(exit, &QAction::triggered, this, [this] { QTimer::singleShot(0, this, [this] { teardown(); }); });

    // Without a tray (a bare X server, the offscreen platform) the window
    // simply stays in the task bar.
    if (!QSystemTrayIcon::isSystemTrayAvailable())
        return;
    tray_ = new QSystemTrayIcon(QIcon(imagePath("vexlane.png")), this);
    tray_->setToolTip(literal(windowTitleText).left(127));
    tray_->setContextMenu(trayMenu_);
    connect(tray_, &QSystemTrayIcon::activated, this, [this](QSystemTrayIcon::ActivationReason reason) {
        if (reason == QSystemTrayIcon::Trigger)
            restoreFromTray();
    });
}

QWidget* MainWindow::buildMainDialog()
{
    auto* dialog = new QWidget(this);
    auto* grid = new QGridLayout(dialog);
    // The eight buttons in two rows, the two status panels beside them, the
    // tile area below, all with the dialog's margin on the left.
    auto* top = new QHBoxLayout;
    auto* buttons = new QGridLayout;
    int position = 0;
    for (const DialogButton& b : dialogButtons) {
        auto* button = new QPushButton(QIcon(imagePath(b.picture)), literal(b.caption), dialog);
        button->setIconSize(QSize(28, 28));
        button->setStyleSheet("text-align: left; padding: 2px 6px;");
        controls_[b.id] = button;
        const int id = b.id;
        connect(button, &QPushButton::clicked, this, [this, id] { onDialogCommand(id); });
        buttons->addWidget(button, position / 4, position % 4);
        ++position;
    }
    top->addLayout(buttons);
    auto makePanel = [&](int id) {
        auto* panel = new QPushButton(dialog);
        panel->setEnabled(false);
        panel->setMinimumSize(160, 76);
        panel->setStyleSheet("QPushButton { text-align: left; padding: 4px; } QPushButton:disabled { color: #202020; }");
        controls_[id] = panel;
        return panel;
    };
    top->addWidget(makePanel(idServicePanel));
    top->addWidget(makePanel(idStreamPanel));
    top->addStretch(1);
    grid->addLayout(top, 0, 0);

    tileArea_ = new TileView(dialog);
    tileArea_->setMinimumSize(640, 480);
    tileArea_->onHover = [this](int x, int y) { onTileHover(x, y); };
    tileArea_->onClick = [this](int x, int y) { onTileClick(x, y); };
    // The window's own resize comes before its layout has moved the tile
    // area; the area's resize comes after, with the geometry in force.
    tileArea_->onResize = [this] { layoutTiles(); };
    tileArea_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored);
    controls_[idTileArea] = tileArea_;
    grid->addWidget(tileArea_, 1, 0);
    grid->setRowStretch(1, 1);
    updateStatusPanels();
    return dialog;
}

void MainWindow::openEndpoint()
{
    endpoint_ = platform::createWindowEndpoint(windowClassName, windowTitleText);
    if (!endpoint_)
        return;   // a second start then finds no window to raise; nothing else depends on it
    endpoint_->onShow = [this](platform::ShowCommand command) {
        if (command == platform::ShowCommand::Restore || command == platform::ShowCommand::Show)
            restoreFromTray();
        else if (command == platform::ShowCommand::Minimize)
            showMinimized();
    };
    endpoint_->onForeground = [this] {
        raise();
        activateWindow();
    };
    endpoint_->onCopyData = [this](const platform::CopyDataMessage& message) {
        return supervision::onCopyData(state_.streams, message, core::calendarSeconds);
    };
    if (endpoint_->pollDescriptor() >= 0) {
        endpointNotifier_ = new QSocketNotifier(endpoint_->pollDescriptor(), QSocketNotifier::Read, this);
        // A stream that floods the window must not starve the rest of the
        // loop: the notifier rests while one bounded turn of messages is
        // handled, and wakes again only behind the events posted meanwhile.
        connect(endpointNotifier_, &QSocketNotifier::activated, this, [this] {
            endpointNotifier_->setEnabled(false);
            endpoint_->dispatchPending();
            QMetaObject::invokeMethod(this, [this] { endpointNotifier_->setEnabled(true); }, Qt::QueuedConnection);
        });
    }
}

void MainWindow::startTick()
{
    tickTimer_ = new QTimer(this);
    tickTimer_->setInterval(1000);
    connect(tickTimer_, &QTimer::timeout, this, &MainWindow::onTimerTick);
    tickTimer_->start();
    geometryTimer_ = new QTimer(this);
    geometryTimer_->setSingleShot(true);
    geometryTimer_->setInterval(400);
    connect(geometryTimer_, &QTimer::timeout, this, &MainWindow::rememberGeometry);
}

void MainWindow::onTimerTick()
{
    if (!core::onTimer(state_))
        return;
    statusBar()->showMessage(toQString(state_.status.get()));
    updateStatusPanels();
}

void MainWindow::updateStatusPanels()
{
    const core::StatusPanelTexts texts = core::statusPanelTexts(state_);
    if (auto* panel = qobject_cast<QPushButton*>(control(idServicePanel)))
        panel->setText(panelText(texts.services));
    if (auto* panel = qobject_cast<QPushButton*>(control(idStreamPanel)))
        panel->setText(panelText(texts.streams));
}

void MainWindow::onMenuCommand(int id)
{
    core::MainCommandHooks hooks = commandHooks(this);
    hooks.openSettings = [this] { core::editSettings(state_, actions_, settingsHooks(this, state_)); };
    core::runMenuCommand(state_, id, hooks);
    statusBar()->showMessage(toQString(state_.status.get()));
}

void MainWindow::onDialogCommand(int id)
{
    core::DialogCommandHooks hooks;
    hooks.commands = commandHooks(this);
    hooks.settings = settingsHooks(this, state_);
    hooks.openWhiteLists = [this] { runWhiteListManager(this, state_); };
    core::runDialogCommand(state_, actions_, id, hooks);
    statusBar()->showMessage(toQString(state_.status.get()));
}

void MainWindow::teardown()
{
    if (tornDown_)
        return;
    tornDown_ = true;
    if (tray_)
        tray_->hide();
    state_.shuttingDown = true;
    // Gives the timer thread and the running service requests the time to
    // see the flag.
    std::this_thread::sleep_for(std::chrono::milliseconds(teardownPauseMs_));
    // The clients stop; the services themselves go on running.
    supervision::stopClients(services_->clients);
    if (tickTimer_)
        tickTimer_->stop();
    if (quit_)
        quit_();
}

void MainWindow::endOnRequest()
{
    // Innermost first: a box over a dialog goes before the dialog. Each
    // close only tells its loop to end; the loops unwind once this returns.
    for (int guard = 0; guard < 64; ++guard) {
        QWidget* modal = QApplication::activeModalWidget();
        if (!modal)
            break;
        if (auto* dialog = qobject_cast<QDialog*>(modal))
            dialog->reject();
        else
            modal->close();
        if (modal->isVisible())
            modal->hide();
    }
    QTimer::singleShot(0, this, [this] { teardown(); });
}

void MainWindow::closeEvent(QCloseEvent* event)
{
    // The close box never ends the program: it minimises.
    event->ignore();
    showMinimized();
}

void MainWindow::changeEvent(QEvent* event)
{
    QMainWindow::changeEvent(event);
    if (event->type() != QEvent::WindowStateChange)
        return;
    if (isMinimized()) {
        state_.minimised = true;
        // Out of the task bar while minimised; the tray brings it back.
        if (tray_ && QSystemTrayIcon::isSystemTrayAvailable())
            QTimer::singleShot(0, this, [this] { if (isMinimized()) hide(); });
        return;
    }
    if (windowState() == Qt::WindowNoState)
        state_.minimised = false;
    // Straight from minimised to maximised leaves the flag set until the
    // next plain restore, as the size code says "maximised".
    layoutTiles();
}

void MainWindow::restoreFromTray()
{
    showNormal();
    raise();
    activateWindow();
}

void MainWindow::showEvent(QShowEvent* event)
{
    QMainWindow::showEvent(event);
    // Whatever a show does to the window is the window system's doing, not
    // the operator's; where it comes to rest is the start of what counts.
    core::notePlacement(geometryWatch_);
    if (geometryTimer_)
        geometryTimer_->start();
}

void MainWindow::moveEvent(QMoveEvent* event)
{
    QMainWindow::moveEvent(event);
    if (geometryTimer_)
        geometryTimer_->start();
}

void MainWindow::resizeEvent(QResizeEvent* event)
{
    QMainWindow::resizeEvent(event);
    layoutTiles();
    if (geometryTimer_)
        geometryTimer_->start();
}

void MainWindow::placeWindow()
{
    const config::MainConfig& c = state_.liveMainConfig;
    const core::Placement placement{c.xWindow, c.yWindow, c.wWindow, c.hWindow, c.display};
    const QRect frame = frameGeometry();
    const auto rect = core::placeWindow(placement, monitorWorkAreas(),
                                        {frame.x(), frame.y(), frame.width(), frame.height()});
    if (!rect)
        return;
    core::notePlacement(geometryWatch_);
    resize(rect->width, rect->height);
    move(rect->x, rect->y);
}

void MainWindow::rememberGeometry()
{
    // Only the end of the operator's own move or resize is remembered: the
    // rest after a show or our own placement is recorded, not saved.
    if (!state_.createFinished || !isVisible() || isMaximized() || isMinimized())
        return;
    const QRect frame = frameGeometry();
    if (!core::settleGeometry(geometryWatch_, {frame.x(), frame.y(), frame.width(), frame.height()}))
        return;
    core::rememberWindowGeometry(state_, actions_, {frame.x(), frame.y(), frame.width(), frame.height()},
                                 monitorWorkAreas());
}

void MainWindow::layoutTiles()
{
    if (!tileArea_ || !centralWidget())
        return;
    const QRect client = centralWidget()->rect();
    const core::Size zone = core::tileZoneForClient(client.width(), client.height() + statusBar()->height(),
                                                    statusBar()->height(), tileArea_->x(), tileArea_->y());
    redrawTiles(zone.width, zone.height);
    updateStatusPanels();
}

void MainWindow::redrawTiles(int width, int height)
{
    if (!tileArea_)
        return;
    const liveview::ZonePicture zone = liveview::drawCamera(state_.streams, *liveView_, width, height, core::tileDrawHooks());
    tileArea_->showZone(zoneImage(zone.pixels), zone.serial);
}

void MainWindow::onTileHover(int x, int y)
{
    if (liveview::updateHover(state_.streams, *liveView_, x, y))
        redrawTiles(-1, -1);
}

void MainWindow::onTileClick(int x, int y)
{
    state_.status.set("");
    statusBar()->clearMessage();
    editCamera(x, y);
}

void MainWindow::editCamera(int x, int y)
{
    QtMessages messages(this);
    const core::EditHooks hooks = windowEditHooks(this, state_, messages, services_, [this] { redrawTiles(-1, -1); });
    core::editCamera(state_, *liveView_, hooks, x, y);
}

} // namespace vx::ui
