// The tile area widget: it shows the newest zone and reports the mouse.
#include <gtest/gtest.h>

#include <QApplication>
#include <QMouseEvent>

#include "support/qt_application.h"
#include "ui/qt/tile_view.h"

using vx::ui::TileView;

namespace {

QApplication& app() { return vx::test::qtApplication(); }

QImage plain(QColor colour)
{
    QImage image(8, 8, QImage::Format_BGR888);
    image.fill(colour);
    return image;
}

void send(TileView& view, QEvent::Type type, Qt::MouseButton button, QPoint at)
{
    QMouseEvent event(type, QPointF(at), QPointF(view.mapToGlobal(at)), button,
                      type == QEvent::MouseMove ? Qt::NoButton : button, Qt::NoModifier);
    QCoreApplication::sendEvent(&view, &event);
}

} // namespace

TEST(TileView, AZoneDrawnEarlierButDeliveredLaterIsDropped)
{
    app();
    TileView view;
    view.showZone(plain(Qt::red), 5);
    view.showZone(plain(Qt::blue), 4);
    EXPECT_EQ(view.zone().pixelColor(0, 0), QColor(Qt::red));
    view.showZone(plain(Qt::green), 6);
    EXPECT_EQ(view.zone().pixelColor(0, 0), QColor(Qt::green));
    view.showZone(QImage(), 7);
    EXPECT_EQ(view.zone().pixelColor(0, 0), QColor(Qt::green));
}

TEST(TileView, ReportsMovesAndLeftClicksOnly)
{
    app();
    TileView view;
    view.resize(640, 480);
    std::vector<QPoint> moves, clicks;
    view.onHover = [&moves](int x, int y) { moves.emplace_back(x, y); };
    view.onClick = [&clicks](int x, int y) { clicks.emplace_back(x, y); };
    send(view, QEvent::MouseMove, Qt::NoButton, {10, 20});
    send(view, QEvent::MouseButtonPress, Qt::RightButton, {30, 40});
    send(view, QEvent::MouseButtonPress, Qt::LeftButton, {50, 60});
    ASSERT_EQ(moves.size(), 1u);
    EXPECT_EQ(moves[0], QPoint(10, 20));
    ASSERT_EQ(clicks.size(), 1u);
    EXPECT_EQ(clicks[0], QPoint(50, 60));
}

#include <QStatusBar>

#include "support/temp_dir.h"
#include "ui/qt/main_window.h"

TEST(TileArea, TheWindowDrawsTheZoneAndAClickClearsTheStatus)
{
    app();
    vx::test::RuntimeSandbox sandbox;
    vx::test::TempDir base;
    std::filesystem::create_directories(base.path() / "configs");
    // The detached timer thread keeps the state: it lives on after the test.
    auto* state = new vx::core::AppState;
    state->baseDirectory = base.path();
    state->ConfigDirectory = base.path().string() + "/configs";
    vx::ui::MainWindow window(*state);
    window.setTeardownPause(0);
    window.setQuitAction([] {});
    ASSERT_TRUE(window.create());
    auto* area = qobject_cast<TileView*>(window.control(vx::ui::idTileArea));
    ASSERT_NE(area, nullptr);
    ASSERT_FALSE(area->zone().isNull());
    EXPECT_GE(area->zone().width(), 640);
    EXPECT_GE(area->zone().height(), 480);
    EXPECT_EQ(area->zone().width() % 4, 0);

    state->status.set("busy");
    window.statusBar()->showMessage("busy");
    send(*area, QEvent::MouseButtonPress, Qt::LeftButton, {2, 2});
    EXPECT_EQ(state->status.get(), "");
    EXPECT_TRUE(window.statusBar()->currentMessage().isEmpty());
    window.teardown();
}
