#include "support/win32/list_view_driver.h"

#include <commctrl.h>

namespace vx::test {

namespace {

std::string utf8(const wchar_t* text)
{
    const int n = ::WideCharToMultiByte(CP_UTF8, 0, text, -1, nullptr, 0, nullptr, nullptr);
    if (n <= 1)
        return {};
    std::string out(static_cast<std::size_t>(n), '\0');
    ::WideCharToMultiByte(CP_UTF8, 0, text, -1, out.data(), n, nullptr, nullptr);
    out.resize(static_cast<std::size_t>(n - 1));
    return out;
}

HWND view(HWND dialog, int id)
{
    return ::GetDlgItem(dialog, id);
}

} // namespace

int rowCount(HWND dialog, int id)
{
    return static_cast<int>(::SendMessageW(view(dialog, id), LVM_GETITEMCOUNT, 0, 0));
}

int columnCount(HWND dialog, int id)
{
    HWND header = reinterpret_cast<HWND>(::SendMessageW(view(dialog, id), LVM_GETHEADER, 0, 0));
    return header ? static_cast<int>(::SendMessageW(header, HDM_GETITEMCOUNT, 0, 0)) : 0;
}

std::string cellText(HWND dialog, int id, int row, int column)
{
    wchar_t text[1024] = {};
    LVITEMW item{};
    item.iSubItem = column;
    item.pszText = text;
    item.cchTextMax = 1024;
    ::SendMessageW(view(dialog, id), LVM_GETITEMTEXTW, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
    return utf8(text);
}

std::string columnTitle(HWND dialog, int id, int column)
{
    wchar_t text[256] = {};
    LVCOLUMNW info{};
    info.mask = LVCF_TEXT;
    info.pszText = text;
    info.cchTextMax = 256;
    ::SendMessageW(view(dialog, id), LVM_GETCOLUMNW, static_cast<WPARAM>(column), reinterpret_cast<LPARAM>(&info));
    return utf8(text);
}

int columnWidth(HWND dialog, int id, int column)
{
    return static_cast<int>(::SendMessageW(view(dialog, id), LVM_GETCOLUMNWIDTH, static_cast<WPARAM>(column), 0));
}

int clientWidth(HWND dialog, int id)
{
    RECT client{};
    ::GetClientRect(view(dialog, id), &client);
    return client.right - client.left;
}

void selectRow(HWND dialog, int id, int row)
{
    LVITEMW state{};
    state.stateMask = LVIS_SELECTED | LVIS_FOCUSED;
    state.state = 0;
    ::SendMessageW(view(dialog, id), LVM_SETITEMSTATE, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(&state));
    state.state = LVIS_SELECTED | LVIS_FOCUSED;
    ::SendMessageW(view(dialog, id), LVM_SETITEMSTATE, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&state));
}

void doubleClickRow(HWND dialog, int id, int row)
{
    RECT cell{};
    cell.left = LVIR_LABEL;
    ::SendMessageW(view(dialog, id), LVM_GETITEMRECT, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&cell));
    const int x = (cell.left + cell.right) / 2;
    const int y = (cell.top + cell.bottom) / 2;
    ::PostMessageW(view(dialog, id), WM_LBUTTONDBLCLK, MK_LBUTTON, MAKELPARAM(x, y));
}

void clickColumn(HWND dialog, int id, int column)
{
    NMLISTVIEW click{};
    click.hdr.hwndFrom = view(dialog, id);
    click.hdr.idFrom = static_cast<UINT_PTR>(id);
    click.hdr.code = LVN_COLUMNCLICK;
    click.iItem = -1;
    click.iSubItem = column;
    ::SendMessageW(dialog, WM_NOTIFY, static_cast<WPARAM>(id), reinterpret_cast<LPARAM>(&click));
}

} // namespace vx::test
