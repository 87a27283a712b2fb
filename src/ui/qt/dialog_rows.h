#pragma once
// Small pieces the stream dialogs' windows share: the OK and Cancel row,
// pickers, and edits that take digits only.
#include <QString>

class QDateEdit;
class QHBoxLayout;
class QLineEdit;
class QPushButton;
class QTimeEdit;
class QWidget;

namespace vx::ui {

class FormWindow;

// The row at the foot of a dialog: the OK button (the default one, it runs
// the form's accept; "ОК" unless the dialog names it otherwise) and "Отмена".
QHBoxLayout* okCancelButtons(FormWindow* window, QPushButton*& ok, QPushButton*& cancel,
                             const char* okCaption = "ОК");
QDateEdit* datePickerEdit(QWidget* parent);
QTimeEdit* timePickerEdit(QWidget* parent);
// An edit that takes digits only, as a numeric edit control.
QLineEdit* digitsEdit(QWidget* parent);
// A line of text that wraps instead of widening its dialog.
QWidget* wrappedLabel(const char* utf8, QWidget* parent);

} // namespace vx::ui
