#include "support/win32/list_view_driver.h"

#include <commctrl.h>

#include "platform/win32/wide_text.h"

namespace vx::test {

int rowCount(HWND dialog, int id)
{
    return static_cast<int>(::SendDlgItemMessageW(dialog, id, LVM_GETITEMCOUNT, 0, 0));
}

std::string cellText(HWND dialog, int id, int row, int column)
{
    wchar_t text[1024] = {};
    LVITEMW item{};
    item.iSubItem = column;
    item.pszText = text;
    item.cchTextMax = 1024;
    ::SendDlgItemMessageW(dialog, id, LVM_GETITEMTEXTW, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
    return platform::win32::narrow(text);
}

int columnWidth(HWND dialog, int id, int column)
{
    return static_cast<int>(::SendDlgItemMessageW(dialog, id, LVM_GETCOLUMNWIDTH, static_cast<WPARAM>(column), 0));
}

int clientWidth(HWND dialog, int id)
{
    RECT client{};
    ::GetClientRect(::GetDlgItem(dialog, id), &client);
    return client.right - client.left;
}

} // namespace vx::test
