#pragma once
// The tile area: shows the zone that the live view drew and reports the
// mouse. It paints the picture it is given as it stands (no copy) and holds
// no logic of its own.
#include <QImage>
#include <QWidget>
#include <cstdint>
#include <functional>

namespace vx::ui {

class TileView : public QWidget {
    Q_OBJECT
public:
    explicit TileView(QWidget* parent = nullptr);

    // Shows a finished zone. A picture older than the one shown (a lower
    // serial, drawn before it but delivered after) is dropped.
    void showZone(const QImage& zone, std::uint64_t serial);
    const QImage& zone() const { return zone_; }
    // The serial of the zone shown; it grows with every zone drawn.
    std::uint64_t serial() const { return serial_; }

    // Zone coordinates of the mouse: every movement, and left clicks.
    std::function<void(int x, int y)> onHover;
    std::function<void(int x, int y)> onClick;
    // The area got its new size (after the window's layout settled).
    std::function<void()> onResize;

protected:
    void paintEvent(QPaintEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    QImage zone_;
    std::uint64_t serial_ = 0;
};

} // namespace vx::ui
