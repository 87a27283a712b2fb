#pragma once
// A modal dialog from a resource of the program over a form: IDOK runs the
// form's accept and closes only when it passes; IDCANCEL (Cancel, Escape,
// the close box) closes with no change.
#include <windows.h>

#include <functional>
#include <string>
#include <utility>

#include "dialogs/form.h"
#include "ui/win32/form_binding.h"

namespace vx::ui::win32 {

struct FormDialog {
    int resource = 0;
    // Windows-1251; empty keeps the resource's caption.
    std::string title;
    // Binds the controls to the form's fields, before the form fills them.
    std::function<void(FormBinding& binding)> bind;
    // A message the binding doesn't take (a timer, a worker's end): true
    // when handled, with the dialog procedure's result in `result`.
    std::function<bool(FormBinding& binding, UINT message, WPARAM wParam, LPARAM lParam, INT_PTR& result)> other;
    // IDCANCEL: true lets the dialog close (the default).
    std::function<bool()> mayCancel;
};

// IDOK, IDCANCEL, or -1 when the resource can't be made into a dialog.
INT_PTR runFormDialog(HWND owner, dialogs::Form& form, const FormDialog& dialog);

// The plain case: a dialog of `resource` (titled `title`, or as the
// resource says when empty) whose controls `bind` ties to `form`; true when
// it ended with OK.
template <typename Form>
bool runBoundDialog(HWND owner, Form& form, int resource, void (*bind)(FormBinding&, Form&), std::string title = {})
{
    FormDialog dialog;
    dialog.resource = resource;
    dialog.title = std::move(title);
    dialog.bind = [&form, bind](FormBinding& b) { bind(b, form); };
    return runFormDialog(owner, form, dialog) == IDOK;
}

// The program's instance, whose resources hold the dialogs.
HINSTANCE programInstance();

} // namespace vx::ui::win32
