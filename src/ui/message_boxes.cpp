#include "ui/message_boxes.h"

#include <QApplication>
#include <QMessageBox>

#include "ui/qt_text.h"

namespace vx::ui {

bool QtMessages::show(const dialogs::Message& box)
{
    QWidget* parent = QApplication::activeModalWidget();
    if (!parent)
        parent = fallbackParent_;
    QMessageBox::Icon icon = QMessageBox::Critical;
    if (box.icon == dialogs::MessageIcon::information)
        icon = QMessageBox::Information;
    else if (box.icon == dialogs::MessageIcon::warning)
        icon = QMessageBox::Warning;
    QMessageBox::StandardButtons buttons = QMessageBox::Ok;
    if (box.buttons == dialogs::MessageButtons::yesNo)
        buttons = QMessageBox::Yes | QMessageBox::No;
    else if (box.buttons == dialogs::MessageButtons::okCancel)
        buttons = QMessageBox::Ok | QMessageBox::Cancel;
    QMessageBox message(icon, toQString(box.title), toQString(box.text), buttons, parent);
    const int answer = message.exec();
    return answer == QMessageBox::Ok || answer == QMessageBox::Yes;
}

} // namespace vx::ui
