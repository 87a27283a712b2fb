#include "ui/qt/message_boxes.h"

#include <QApplication>
#include <QAbstractButton>
#include <QMessageBox>
#include <utility>

#include "ui/qt/qt_text.h"

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
    // The interface is Russian whatever translations the machine has.
    const std::pair<QMessageBox::StandardButton, const char*> captions[] = {
        {QMessageBox::Ok, "ОК"}, {QMessageBox::Cancel, "Отмена"}, {QMessageBox::Yes, "Да"}, {QMessageBox::No, "Нет"}};
    for (const auto& [button, caption] : captions)
        if (QAbstractButton* b = message.button(button))
            b->setText(literal(caption));
    const int answer = message.exec();
    return answer == QMessageBox::Ok || answer == QMessageBox::Yes;
}

} // namespace vx::ui
