#include "ui/win32/form_dialog.h"

#include <commctrl.h>

#include <memory>

#include "ui/win32/form_binding.h"
#include "ui/win32/win_text.h"

namespace vx::ui::win32 {

namespace {

struct Running {
    dialogs::Form& form;
    const FormDialog& dialog;
    std::unique_ptr<FormBinding> binding;
};

INT_PTR CALLBACK formProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_INITDIALOG) {
        auto* running = reinterpret_cast<Running*>(lParam);
        ::SetWindowLongPtrW(window, DWLP_USER, lParam);
        running->binding = std::make_unique<FormBinding>(window);
        if (!running->dialog.title.empty())
            ::SetWindowTextW(window, wideOf(running->dialog.title).c_str());
        if (running->dialog.bind)
            running->dialog.bind(*running->binding);
        running->form.fill();
        running->binding->pull();
        return TRUE;
    }
    auto* running = reinterpret_cast<Running*>(::GetWindowLongPtrW(window, DWLP_USER));
    if (!running || !running->binding)
        return FALSE;
    FormBinding& binding = *running->binding;
    if (running->dialog.other) {
        INT_PTR result = 0;
        if (running->dialog.other(binding, message, wParam, lParam, result))
            return result;
    }
    switch (message) {
    case WM_COMMAND: {
        const int id = LOWORD(wParam);
        if (id == IDOK) {
            const bool close = running->form.accept();
            binding.pull();
            if (close)
                ::EndDialog(window, IDOK);
            return TRUE;
        }
        if (id == IDCANCEL) {
            if (!running->dialog.mayCancel || running->dialog.mayCancel())
                ::EndDialog(window, IDCANCEL);
            return TRUE;
        }
        return binding.onCommand(id, HIWORD(wParam)) ? TRUE : FALSE;
    }
    case WM_NOTIFY:
        return binding.onNotify(*reinterpret_cast<const NMHDR*>(lParam)) ? TRUE : FALSE;
    case WM_DRAWITEM:
        return binding.onDrawItem(*reinterpret_cast<const DRAWITEMSTRUCT*>(lParam)) ? TRUE : FALSE;
    default:
        return FALSE;
    }
}

} // namespace

HINSTANCE programInstance()
{
    return ::GetModuleHandleW(nullptr);
}

INT_PTR runFormDialog(HWND owner, dialogs::Form& form, const FormDialog& dialog)
{
    // The pickers, list views and bars of the dialogs.
    static const bool registered = [] {
        INITCOMMONCONTROLSEX controls{sizeof(INITCOMMONCONTROLSEX), ICC_STANDARD_CLASSES | ICC_DATE_CLASSES |
                                                                        ICC_LISTVIEW_CLASSES | ICC_PROGRESS_CLASS |
                                                                        ICC_BAR_CLASSES};
        return ::InitCommonControlsEx(&controls) != FALSE;
    }();
    (void)registered;
    Running running{form, dialog, nullptr};
    return ::DialogBoxParamW(programInstance(), MAKEINTRESOURCEW(dialog.resource), owner, formProcedure,
                             reinterpret_cast<LPARAM>(&running));
}

} // namespace vx::ui::win32
