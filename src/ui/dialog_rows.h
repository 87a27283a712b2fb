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

// "ОК" (the default button, runs the form's accept) and "Отмена".
QHBoxLayout* okCancelButtons(FormWindow* window, QPushButton*& ok, QPushButton*& cancel);
QDateEdit* datePickerEdit(QWidget* parent);
QTimeEdit* timePickerEdit(QWidget* parent);
// An edit that takes digits only, as a numeric edit control.
QLineEdit* digitsEdit(QWidget* parent);
// A line of text that wraps instead of widening its dialog.
QWidget* wrappedLabel(const char* utf8, QWidget* parent);

} // namespace vx::ui
