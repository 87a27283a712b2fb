#include "ui/qt/form_window.h"

#include "ui/qt/title_fit.h"

namespace vx::ui {

FormWindow::FormWindow(dialogs::Form& form, QWidget* parent) : QDialog(parent), form_(form)
{
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
}

void FormWindow::start()
{
    form_.fill();
    binding_.pull();
    fitTitle(*this);
    show();
}

int FormWindow::run()
{
    form_.fill();
    binding_.pull();
    fitTitle(*this);
    return exec();
}

void FormWindow::accept()
{
    const bool close = form_.accept();
    binding_.pull();
    if (close)
        QDialog::accept();
}

} // namespace vx::ui
