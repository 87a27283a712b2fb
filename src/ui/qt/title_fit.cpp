#include "ui/qt/title_fit.h"

#include <QFont>
#include <QFontMetrics>
#include <QLayout>
#include <QStyle>
#include <QWidget>
#include <algorithm>

namespace vx::ui {

int titleWidth(const QWidget& window)
{
    QFont font = window.font();
    font.setBold(true);
    const int text = QFontMetrics(font).horizontalAdvance(window.windowTitle());
    // The icon and three buttons (minimise, maximise, close) take about a
    // bar's height each, and the text has a margin on either side.
    const int bar = std::max(window.style()->pixelMetric(QStyle::PM_TitleBarHeight, nullptr, &window),
                             QFontMetrics(font).height());
    return text + 4 * bar + 2 * QFontMetrics(font).averageCharWidth();
}

void fitTitle(QWidget& window)
{
    if (QLayout* layout = window.layout())
        layout->activate();
    const int needed = std::max(titleWidth(window), window.minimumSizeHint().width());
    if (window.minimumWidth() < needed)
        window.setMinimumWidth(needed);
    // A window not sized yet takes its natural size, widened; one already
    // sized keeps its height.
    if (!window.testAttribute(Qt::WA_Resized)) {
        const QSize natural = window.sizeHint().expandedTo(window.minimumSize());
        window.resize(std::max(natural.width(), needed), natural.height());
    } else if (window.width() < needed) {
        window.resize(needed, window.height());
    }
}

} // namespace vx::ui
