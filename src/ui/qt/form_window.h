#pragma once
// A dialog window over a form: the default button runs the form's accept and
// closes only when it passes; Cancel and Escape close with no change.
#include <QDialog>

#include "dialogs/form.h"
#include "ui/qt/form_binding.h"

namespace vx::ui {

class FormWindow : public QDialog {
public:
    FormWindow(dialogs::Form& form, QWidget* parent);

    FormBinding& binding() { return binding_; }
    // Fills the form and shows its fields, without waiting (tests).
    void start();
    // start, then modal until closed; QDialog::Accepted for OK.
    int run();
    void accept() override;

private:
    dialogs::Form& form_;
    FormBinding binding_;
};

} // namespace vx::ui
