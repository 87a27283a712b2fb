#pragma once
// Binds widgets to the fields of a form, one binder per kind of field. A
// widget only carries what the operator does to its field; after each such
// action the form reacts and every bound widget is set again from its field,
// so the form alone decides what is shown, enabled and chosen.
#include <functional>
#include <vector>

#include "dialogs/form_fields.h"

class QCheckBox;
class QComboBox;
class QDateEdit;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;
class QRadioButton;
class QTableWidget;
class QTimeEdit;

namespace vx::ui {

class FormBinding {
public:
    // Sets every bound widget from its field.
    void pull();

    void bindText(QLineEdit* edit, dialogs::TextField& field);
    // A text of several lines, held to the field's maximum length.
    void bindTextArea(QPlainTextEdit* edit, dialogs::TextField& field);
    void bindInteger(QLineEdit* edit, dialogs::IntegerField& field);
    void bindReal(QLineEdit* edit, dialogs::RealField& field);
    void bindCheck(QCheckBox* check, dialogs::CheckField& field);
    // One radio button per choice, in the choices' order.
    void bindChoice(const std::vector<QRadioButton*>& buttons, dialogs::ChoiceField& field);
    void bindList(QComboBox* box, dialogs::ListField& field);
    void bindDate(QDateEdit* edit, dialogs::DateField& field);
    void bindTime(QTimeEdit* edit, dialogs::TimeField& field);
    void bindButton(QPushButton* button, dialogs::ButtonField& field);
    void bindLabel(QLabel* label, dialogs::LabelField& field);
    // Gridlines, full-row selection, column 0 left-aligned and the others
    // centred, widths by the columns' shares of the client width.
    void bindTable(QTableWidget* view, dialogs::TableField& field);

private:
    // Runs an operator's action, then pulls; ignored while pulling, when the
    // widgets' own signals come from the form's values.
    void act(const std::function<void()>& action);

    std::vector<std::function<void()>> pulls_;
    bool pulling_ = false;
};

} // namespace vx::ui
