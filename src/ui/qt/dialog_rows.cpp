#include "ui/qt/dialog_rows.h"

#include <QDateEdit>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpressionValidator>
#include <QTimeEdit>

#include "ui/qt/form_window.h"
#include "ui/qt/qt_text.h"

namespace vx::ui {

QHBoxLayout* okCancelButtons(FormWindow* window, QPushButton*& ok, QPushButton*& cancel, const char* okCaption)
{
    auto* row = new QHBoxLayout;
    row->addStretch();
    ok = new QPushButton(literal(okCaption), window);   // "ОК" in Cyrillic letters, as the dialogs are designed
    cancel = new QPushButton(literal("Отмена"), window);
    ok->setDefault(true);
    ok->setAutoDefault(true);
    cancel->setAutoDefault(false);
    QObject::connect(ok, &QPushButton::clicked, window, &FormWindow::accept);
    QObject::connect(cancel, &QPushButton::clicked, window, &FormWindow::reject);
    row->addWidget(ok);
    row->addWidget(cancel);
    return row;
}

QDateEdit* datePickerEdit(QWidget* parent)
{
    auto* edit = new QDateEdit(parent);
    edit->setCalendarPopup(true);
    edit->setDisplayFormat("dd.MM.yyyy");
    return edit;
}

QTimeEdit* timePickerEdit(QWidget* parent)
{
    auto* edit = new QTimeEdit(parent);
    edit->setDisplayFormat("HH:mm:ss");
    return edit;
}

QLineEdit* digitsEdit(QWidget* parent)
{
    auto* edit = new QLineEdit(parent);
    edit->setValidator(new QRegularExpressionValidator(QRegularExpression("[0-9]*"), edit));
    return edit;
}

QWidget* wrappedLabel(const char* utf8, QWidget* parent)
{
    auto* label = new QLabel(literal(utf8), parent);
    label->setWordWrap(true);
    return label;
}

} // namespace vx::ui
