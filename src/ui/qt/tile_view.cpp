#include "ui/qt/tile_view.h"

#include <QMouseEvent>
#include <QPainter>

namespace vx::ui {

TileView::TileView(QWidget* parent) : QWidget(parent)
{
    setMouseTracking(true);
    setAttribute(Qt::WA_OpaquePaintEvent);
}

void TileView::showZone(const QImage& zone, std::uint64_t serial)
{
    if (zone.isNull() || serial < serial_)
        return;
    serial_ = serial;
    zone_ = zone;
    update();
}

void TileView::paintEvent(QPaintEvent* event)
{
    QPainter painter(this);
    painter.fillRect(event->rect(), palette().window());
    if (!zone_.isNull())
        painter.drawImage(0, 0, zone_);
}

void TileView::mouseMoveEvent(QMouseEvent* event)
{
    if (onHover) {
        const QPoint p = event->position().toPoint();
        onHover(p.x(), p.y());
    }
    QWidget::mouseMoveEvent(event);
}

void TileView::mousePressEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton && onClick) {
        const QPoint p = event->position().toPoint();
        onClick(p.x(), p.y());
    }
    QWidget::mousePressEvent(event);
}

void TileView::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    if (onResize)
        onResize();
}

} // namespace vx::ui
