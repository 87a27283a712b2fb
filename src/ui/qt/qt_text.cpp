#include "ui/qt/qt_text.h"

#include "config/text_codec.h"

namespace vx::ui {

QString toQString(const std::string& cp1251)
{
    return QString::fromStdString(config::cp1251ToUtf8(cp1251));
}

std::string fromQString(const QString& text)
{
    return config::utf8ToCp1251(text.toStdString());
}

} // namespace vx::ui
