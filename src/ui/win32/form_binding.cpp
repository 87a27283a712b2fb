#include "ui/win32/form_binding.h"

#include <windowsx.h>

#include "ui/win32/win_text.h"

namespace vx::ui::win32 {

namespace {

std::wstring windowText(HWND control)
{
    const int length = ::GetWindowTextLengthW(control);
    std::wstring text(static_cast<std::size_t>(length) + 1, L'\0');
    const int got = ::GetWindowTextW(control, text.data(), length + 1);
    text.resize(static_cast<std::size_t>(got > 0 ? got : 0));
    return text;
}

bool isMultiline(HWND edit)
{
    return (::GetWindowLongPtrW(edit, GWL_STYLE) & ES_MULTILINE) != 0;
}

std::string withoutCarriageReturns(std::string text)
{
    std::erase(text, '\r');
    return text;
}

std::string withCarriageReturns(const std::string& text)
{
    std::string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\n' && (i == 0 || text[i - 1] != '\r'))
            out += '\r';
        out += text[i];
    }
    return out;
}

bool isClass(HWND control, const wchar_t* name)
{
    wchar_t found[32] = {};
    ::GetClassNameW(control, found, 32);
    return ::lstrcmpiW(found, name) == 0;
}

SYSTEMTIME systemTime(const config::DateTime& value)
{
    SYSTEMTIME time{};
    time.wYear = value.year;
    time.wMonth = value.month;
    time.wDay = value.day;
    time.wHour = value.hour;
    time.wMinute = value.minute;
    time.wSecond = value.second;
    // A picker takes no invalid date: one that isn't whole shows 2000-01-01.
    if (time.wYear < 1601 || time.wMonth < 1 || time.wMonth > 12 || time.wDay < 1 || time.wDay > 31) {
        time.wYear = 2000;
        time.wMonth = 1;
        time.wDay = 1;
    }
    if (time.wHour > 23 || time.wMinute > 59 || time.wSecond > 59)
        time.wHour = time.wMinute = time.wSecond = 0;
    return time;
}

void setEnabled(HWND control, bool enabled)
{
    if ((::IsWindowEnabled(control) != FALSE) != enabled)
        ::EnableWindow(control, enabled ? TRUE : FALSE);
}

void setVisible(HWND control, bool visible)
{
    // The control's own flag: before the dialog shows, IsWindowVisible is
    // false for every control in it.
    const bool shown = (::GetWindowLongPtrW(control, GWL_STYLE) & WS_VISIBLE) != 0;
    if (shown != visible)
        ::ShowWindow(control, visible ? SW_SHOW : SW_HIDE);
}

} // namespace

std::string controlText(HWND control)
{
    return cp1251Of(windowText(control));
}

void setControlText(HWND control, const std::string& cp1251)
{
    ::SetWindowTextW(control, wideOf(cp1251).c_str());
}

void FormBinding::pull()
{
    pulling_ = true;
    for (const auto& pull : pulls_)
        pull();
    pulling_ = false;
}

void FormBinding::act(const std::function<void()>& action)
{
    if (pulling_)
        return;
    action();
    pull();
}

// An edit over a field that holds its text: the field's text, limit, state
// and visibility go to the edit; typing only changes the text (no pull, so
// the caret stays put).
template <typename Field>
void FormBinding::bindEdit(int id, Field& field)
{
    HWND edit = control(id);
    pulls_.push_back([edit, &field] {
        if constexpr (requires { field.maxLength; })
            ::SendMessageW(edit, EM_LIMITTEXT, field.maxLength, 0);
        const std::string shown = isMultiline(edit) ? withCarriageReturns(field.text) : field.text;
        if (controlText(edit) != shown)
            setControlText(edit, shown);
        setEnabled(edit, field.enabled);
        if constexpr (requires { field.visible; })
            setVisible(edit, field.visible);
    });
    bound_.push_back({id,
                      [this, edit, &field](int code) {
                          if (code != EN_CHANGE || pulling_)
                              return;
                          const std::string text = controlText(edit);
                          field.type(isMultiline(edit) ? withoutCarriageReturns(text) : text);
                      },
                      {},
                      {}});
}

void FormBinding::bindText(int id, dialogs::TextField& field)
{
    bindEdit(id, field);
}

void FormBinding::bindInteger(int id, dialogs::IntegerField& field)
{
    bindEdit(id, field);
}

void FormBinding::bindReal(int id, dialogs::RealField& field)
{
    bindEdit(id, field);
}

void FormBinding::bindCheck(int id, dialogs::CheckField& field)
{
    HWND check = control(id);
    pulls_.push_back([check, &field] {
        ::SendMessageW(check, BM_SETCHECK, field.checked ? BST_CHECKED : BST_UNCHECKED, 0);
        setEnabled(check, field.enabled);
    });
    bound_.push_back({id,
                      [this, &field](int code) {
                          if (code == BN_CLICKED)
                              act([&field] { field.click(); });
                      },
                      {},
                      {}});
}

void FormBinding::bindChoice(const std::vector<int>& ids, dialogs::ChoiceField& field)
{
    field.count = static_cast<std::int32_t>(ids.size());
    for (std::size_t i = 0; i < ids.size(); ++i) {
        const auto index = static_cast<std::int32_t>(i);
        bound_.push_back({ids[i],
                          [this, &field, index](int code) {
                              if (code == BN_CLICKED)
                                  act([&field, index] { field.choose(index); });
                          },
                          {},
                          {}});
    }
    pulls_.push_back([this, ids, &field] {
        for (std::size_t i = 0; i < ids.size(); ++i) {
            HWND button = control(ids[i]);
            ::SendMessageW(button, BM_SETCHECK,
                           static_cast<std::int32_t>(i) == field.chosen ? BST_CHECKED : BST_UNCHECKED, 0);
            setEnabled(button, field.enabled);
        }
    });
}

void FormBinding::bindList(int id, dialogs::ListField& field)
{
    HWND box = control(id);
    const bool combo = isClass(box, L"ComboBox");
    const UINT reset = combo ? CB_RESETCONTENT : LB_RESETCONTENT;
    const UINT add = combo ? CB_ADDSTRING : LB_ADDSTRING;
    const UINT setSelection = combo ? CB_SETCURSEL : LB_SETCURSEL;
    const UINT getSelection = combo ? CB_GETCURSEL : LB_GETCURSEL;
    auto shown = std::make_shared<std::vector<std::string>>();
    pulls_.push_back([box, combo, shown, reset, add, setSelection, &field] {
        if (*shown != field.items || ::SendMessageW(box, combo ? CB_GETCOUNT : LB_GETCOUNT, 0, 0) !=
                                         static_cast<LRESULT>(field.items.size())) {
            ::SendMessageW(box, reset, 0, 0);
            for (const std::string& item : field.items)
                ::SendMessageW(box, add, 0, reinterpret_cast<LPARAM>(wideOf(item).c_str()));
            *shown = field.items;
        }
        ::SendMessageW(box, setSelection, static_cast<WPARAM>(field.selected), 0);
        setEnabled(box, field.enabled);
    });
    const int change = combo ? CBN_SELCHANGE : LBN_SELCHANGE;
    bound_.push_back({id,
                      [this, box, change, getSelection, &field](int code) {
                          if (code != change)
                              return;
                          const auto index = static_cast<std::int32_t>(::SendMessageW(box, getSelection, 0, 0));
                          act([&field, index] { field.select(index); });
                      },
                      {},
                      {}});
}

void FormBinding::bindDate(int id, dialogs::DateField& field)
{
    HWND picker = control(id);
    pulls_.push_back([picker, &field] {
        SYSTEMTIME time = systemTime(field.value);
        ::SendMessageW(picker, DTM_SETSYSTEMTIME, GDT_VALID, reinterpret_cast<LPARAM>(&time));
        setEnabled(picker, field.enabled);
    });
    bound_.push_back({id,
                      {},
                      [this, &field](const NMHDR& header) {
                          if (header.code != DTN_DATETIMECHANGE)
                              return;
                          const auto& change = reinterpret_cast<const NMDATETIMECHANGE&>(header);
                          if (change.dwFlags != GDT_VALID)
                              return;
                          config::DateTime value{};
                          value.year = change.st.wYear;
                          value.month = change.st.wMonth;
                          value.day = change.st.wDay;
                          act([&field, value] { field.pick(value); });
                      },
                      {}});
}

void FormBinding::bindTime(int id, dialogs::TimeField& field)
{
    HWND picker = control(id);
    pulls_.push_back([picker, &field] {
        SYSTEMTIME time = systemTime(field.value);
        ::SendMessageW(picker, DTM_SETSYSTEMTIME, GDT_VALID, reinterpret_cast<LPARAM>(&time));
        setEnabled(picker, field.enabled);
    });
    bound_.push_back({id,
                      {},
                      [this, &field](const NMHDR& header) {
                          if (header.code != DTN_DATETIMECHANGE)
                              return;
                          const auto& change = reinterpret_cast<const NMDATETIMECHANGE&>(header);
                          if (change.dwFlags != GDT_VALID)
                              return;
                          config::DateTime value{};
                          value.hour = change.st.wHour;
                          value.minute = change.st.wMinute;
                          value.second = change.st.wSecond;
                          act([&field, value] { field.pick(value); });
                      },
                      {}});
}

void FormBinding::bindButton(int id, dialogs::ButtonField& field)
{
    HWND button = control(id);
    pulls_.push_back([button, &field] {
        if (controlText(button) != field.caption)
            setControlText(button, field.caption);
        setEnabled(button, field.enabled);
        ::InvalidateRect(button, nullptr, TRUE);
    });
    bound_.push_back({id,
                      [this, &field](int code) {
                          if (code == BN_CLICKED)
                              act([&field] { field.press(); });
                      },
                      {},
                      [&field](const DRAWITEMSTRUCT& item) {
                          // Pure green of half brightness under white text.
                          const bool pressed = (item.itemState & ODS_SELECTED) != 0;
                          RECT rect = item.rcItem;
                          HBRUSH ground = field.marked ? ::CreateSolidBrush(RGB(0, 128, 0))
                                                       : ::GetSysColorBrush(COLOR_BTNFACE);
                          ::FillRect(item.hDC, &rect, ground);
                          if (field.marked)
                              ::DeleteObject(ground);
                          ::DrawEdge(item.hDC, &rect, pressed ? EDGE_SUNKEN : EDGE_RAISED, BF_RECT);
                          ::SetBkMode(item.hDC, TRANSPARENT);
                          COLORREF colour = field.marked ? RGB(255, 255, 255) : ::GetSysColor(COLOR_BTNTEXT);
                          if (!field.enabled)
                              colour = ::GetSysColor(COLOR_GRAYTEXT);
                          ::SetTextColor(item.hDC, colour);
                          const std::wstring caption = wideOf(field.caption);
                          ::DrawTextW(item.hDC, caption.c_str(), -1, &rect, DT_CENTER | DT_VCENTER | DT_SINGLELINE);
                          if (item.itemState & ODS_FOCUS) {
                              RECT focus = rect;
                              ::InflateRect(&focus, -3, -3);
                              ::DrawFocusRect(item.hDC, &focus);
                          }
                      }});
}

void FormBinding::bindLabel(int id, dialogs::LabelField& field)
{
    HWND label = control(id);
    pulls_.push_back([label, &field] {
        if (controlText(label) != field.text)
            setControlText(label, field.text);
        setVisible(label, field.visible);
    });
}

void FormBinding::bindTable(int id, dialogs::TableField& field)
{
    HWND view = control(id);
    ListView_SetExtendedListViewStyle(view, LVS_EX_GRIDLINES | LVS_EX_FULLROWSELECT);
    struct Shown {
        std::size_t columns = 0;
        std::vector<std::vector<std::string>> rows;
    };
    auto shown = std::make_shared<Shown>();
    pulls_.push_back([view, shown, &field] {
        if (shown->columns != field.columns.size()) {
            while (ListView_DeleteColumn(view, 0)) {
            }
            for (std::size_t c = 0; c < field.columns.size(); ++c) {
                std::wstring title = wideOf(field.columns[c].title);
                LVCOLUMNW column{};
                column.mask = LVCF_TEXT | LVCF_FMT | LVCF_WIDTH;
                column.fmt = c > 0 && field.columns[c].centred ? LVCFMT_CENTER : LVCFMT_LEFT;
                column.cx = 50;
                column.pszText = title.data();
                ::SendMessageW(view, LVM_INSERTCOLUMNW, c, reinterpret_cast<LPARAM>(&column));
            }
            shown->columns = field.columns.size();
        }
        if (shown->rows != field.rows) {
            ::SendMessageW(view, WM_SETREDRAW, FALSE, 0);
            ListView_DeleteAllItems(view);
            for (std::size_t r = 0; r < field.rows.size(); ++r)
                for (std::size_t c = 0; c < field.columns.size(); ++c) {
                    std::wstring text = c < field.rows[r].size() ? wideOf(field.rows[r][c]) : std::wstring();
                    LVITEMW item{};
                    item.mask = LVIF_TEXT;
                    item.iItem = static_cast<int>(r);
                    item.iSubItem = static_cast<int>(c);
                    item.pszText = text.data();
                    ::SendMessageW(view, c == 0 ? LVM_INSERTITEMW : LVM_SETITEMTEXTW, c == 0 ? 0 : r,
                                   reinterpret_cast<LPARAM>(&item));
                }
            ::SendMessageW(view, WM_SETREDRAW, TRUE, 0);
            shown->rows = field.rows;
        }
        const int selected = ListView_GetNextItem(view, -1, LVNI_SELECTED);
        if (selected != field.selectedRow) {
            ListView_SetItemState(view, -1, 0, LVIS_SELECTED | LVIS_FOCUSED);
            if (field.selectedRow >= 0) {
                ListView_SetItemState(view, field.selectedRow, LVIS_SELECTED | LVIS_FOCUSED,
                                      LVIS_SELECTED | LVIS_FOCUSED);
                ListView_EnsureVisible(view, field.selectedRow, FALSE);
            }
        }
        RECT client{};
        ::GetClientRect(view, &client);
        const std::vector<int> widths = field.widths(client.right - client.left);
        for (std::size_t c = 0; c < widths.size(); ++c)
            ListView_SetColumnWidth(view, static_cast<int>(c), widths[c]);
        setEnabled(view, field.enabled);
    });
    bound_.push_back({id,
                      {},
                      [this, &field](const NMHDR& header) {
                          if (header.code == LVN_COLUMNCLICK) {
                              const int column = reinterpret_cast<const NMLISTVIEW&>(header).iSubItem;
                              act([&field, column] { field.clickHeader(column); });
                          } else if (header.code == NM_DBLCLK) {
                              const int row = reinterpret_cast<const NMITEMACTIVATE&>(header).iItem;
                              if (row >= 0)
                                  act([&field, row] { field.doubleClick(row); });
                          } else if (header.code == LVN_ITEMCHANGED && !pulling_) {
                              const auto& change = reinterpret_cast<const NMLISTVIEW&>(header);
                              if ((change.uChanged & LVIF_STATE) == 0)
                                  return;
                              const bool was = (change.uOldState & LVIS_SELECTED) != 0;
                              const bool is = (change.uNewState & LVIS_SELECTED) != 0;
                              if (is && !was)
                                  field.select(change.iItem);
                              else if (was && !is && field.selectedRow == change.iItem)
                                  field.select(-1);
                          }
                      },
                      {}});
}

bool FormBinding::onCommand(int id, int code)
{
    bool taken = false;
    for (const Bound& bound : bound_)
        if (bound.id == id && bound.command) {
            bound.command(code);
            taken = true;
        }
    return taken;
}

bool FormBinding::onNotify(const NMHDR& header)
{
    bool taken = false;
    for (const Bound& bound : bound_)
        if (bound.id == static_cast<int>(header.idFrom) && bound.notify) {
            bound.notify(header);
            taken = true;
        }
    return taken;
}

bool FormBinding::onDrawItem(const DRAWITEMSTRUCT& item)
{
    for (const Bound& bound : bound_)
        if (bound.id == static_cast<int>(item.CtlID) && bound.draw) {
            bound.draw(item);
            return true;
        }
    return false;
}

} // namespace vx::ui::win32
