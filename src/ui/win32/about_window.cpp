#include "ui/win32/about_window.h"

#include "ui/win32/about_window_ids.h"
#include "ui/win32/form_dialog.h"
#include "ui/win32/resource_ids.h"
#include "ui/win32/win_text.h"

namespace vx::ui::win32 {

namespace {

INT_PTR CALLBACK aboutProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_INITDIALOG:
        ::SetDlgItemTextW(window, IDC_ABOUT_TEXT, reinterpret_cast<const wchar_t*>(lParam));
        return TRUE;
    case WM_COMMAND:
        if (LOWORD(wParam) == IDOK || LOWORD(wParam) == IDCANCEL) {
            ::EndDialog(window, LOWORD(wParam));
            return TRUE;
        }
        return FALSE;
    default:
        return FALSE;
    }
}

} // namespace

void showAboutDialog(HWND owner, const std::string& text)
{
    const std::wstring shown = wideOf(text);
    ::DialogBoxParamW(programInstance(), MAKEINTRESOURCEW(IDD_ABOUT), owner, aboutProcedure,
                      reinterpret_cast<LPARAM>(shown.c_str()));
}

} // namespace vx::ui::win32
