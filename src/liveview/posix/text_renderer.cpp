#include "liveview/text_renderer.h"

#include <QFont>
#include <QFontMetrics>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <map>
#include <utility>

#include "config/text_codec.h"

namespace vx::liveview {

namespace {

QColor toQColor(TextColour c)
{
    return QColor(static_cast<int>(c & 0xFF), static_cast<int>((c >> 8) & 0xFF), static_cast<int>((c >> 16) & 0xFF));
}

int alignmentFlags(unsigned format)
{
    int flags = 0;
    if (format & textCenter)
        flags |= Qt::AlignHCenter;
    else if (format & textRight)
        flags |= Qt::AlignRight;
    else
        flags |= Qt::AlignLeft;
    if (format & textVCenter)
        flags |= Qt::AlignVCenter;
    else if (format & textBottom)
        flags |= Qt::AlignBottom;
    else
        flags |= Qt::AlignTop;
    if ((format & textWordBreak) && !(format & textSingleLine))
        flags |= Qt::TextWordWrap;
    if (format & textSingleLine)
        flags |= Qt::TextSingleLine;
    return flags;
}

// The font whose line (ascent plus descent) is `size` pixels, as a font of
// a given height is chosen on the manager's first platform. Looked up once
// per name and size on each thread: tiles are drawn side by side, and a
// font object is not to be shared between threads.
QFont fontForCellHeight(const std::string& fontName, int size)
{
    thread_local std::map<std::pair<std::string, int>, QFont> cache;
    auto key = std::make_pair(fontName, size);
    auto it = cache.find(key);
    if (it != cache.end())
        return it->second;
    QFont font(QString::fromLatin1(fontName.c_str()));
    font.setWeight(QFont::Normal);
    font.setPixelSize(size);
    const int cell = QFontMetrics(font).height();
    if (cell > size)
        font.setPixelSize(std::max(1, size * size / cell));
    cache.emplace(key, font);
    return font;
}

} // namespace

void drawText(imaging::Picture& picture, const std::string& fontName, int size, const std::string& text, int x, int y,
              TextColour colour, TextColour shadowColour, unsigned format, TextSize* sizeOut)
{
    if (picture.empty() || (picture.channels != 3 && picture.channels != 4) || size <= 0 ||
        !QGuiApplication::instance())
        return;
    QString qtext = QString::fromUtf8(config::cp1251ToUtf8(text));
    qtext.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    const QFont font = fontForCellHeight(fontName, size);
    if (sizeOut) {
        const QFontMetrics metrics(font);
        sizeOut->width = metrics.horizontalAdvance(qtext);
        sizeOut->height = metrics.height();
    }
    // The image works on the picture's own pixels: no copy either way.
    // Four channels in B, G, R, A order are the painter's own pixel format.
    QImage image(picture.data, picture.width, picture.height, static_cast<qsizetype>(picture.stride),
                 picture.channels == 4 ? QImage::Format_RGB32 : QImage::Format_BGR888);
    QPainter painter(&image);
    painter.setFont(font);
    const int flags = alignmentFlags(format);
    const QRect target(x, y, picture.width - 1 - x, picture.height - 1 - y);
    painter.setPen(toQColor(shadowColour));
    painter.drawText(target.translated(2, 2), flags, qtext);
    painter.setPen(toQColor(colour));
    painter.drawText(target, flags, qtext);
}

} // namespace vx::liveview
