#pragma once
// In memory the manager keeps text in Windows-1251; Qt wants QString.
#include <QString>
#include <string>

namespace vx::ui {

QString toQString(const std::string& cp1251);
std::string fromQString(const QString& text);
// A UTF-8 literal of the source as QString.
inline QString literal(const char* utf8) { return QString::fromUtf8(utf8); }

} // namespace vx::ui
