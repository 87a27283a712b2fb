#include "journal_window.h"

#include <commctrl.h>
#include <windowsx.h>

#include <algorithm>
#include <cstring>

#include "config/text_codec.h"
#include "journal_ids.h"

namespace vx::journal {

namespace {

const UINT_PTR refreshTimer = 1;
const UINT refreshMs = 500;

// The journal's texts are Windows-1251; the W calls take UTF-16.
std::wstring wide(const std::string& cp1251)
{
    const std::u16string utf16 = config::cp1251ToUtf16(cp1251);
    return std::wstring(utf16.begin(), utf16.end());
}

std::string cp1251Of(const std::wstring& text)
{
    return config::utf16ToCp1251(std::u16string(text.begin(), text.end()));
}

COLORREF colourRef(const Colour& c)
{
    return RGB(c.red, c.green, c.blue);
}

int shownRows(const JournalLines& lines)
{
    return static_cast<int>(lines.shownCount());
}

} // namespace

JournalWindow::JournalWindow(std::filesystem::path logFolder) : folder_(std::move(logFolder)) {}

JournalWindow::~JournalWindow()
{
    if (window_ && ::IsWindow(window_))
        ::DestroyWindow(window_);
    if (font_)
        ::DeleteObject(font_);
    if (boldFont_)
        ::DeleteObject(boldFont_);
}

bool JournalWindow::open(HINSTANCE instance, int show)
{
    window_ = ::CreateDialogParamW(instance, MAKEINTRESOURCEW(IDD_JOURNAL), nullptr, &JournalWindow::procedure,
                                   reinterpret_cast<LPARAM>(this));
    if (!window_)
        return false;
    ::ShowWindow(window_, show);
    ::UpdateWindow(window_);
    return true;
}

INT_PTR CALLBACK JournalWindow::procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_INITDIALOG) {
        auto* self = reinterpret_cast<JournalWindow*>(lParam);
        ::SetWindowLongPtrW(window, DWLP_USER, lParam);
        self->window_ = window;
        self->initialise();
        // The lines have the focus, not the first control of the bar.
        ::SetFocus(self->list_);
        return FALSE;
    }
    auto* self = reinterpret_cast<JournalWindow*>(::GetWindowLongPtrW(window, DWLP_USER));
    return self ? self->handle(message, wParam, lParam) : FALSE;
}

INT_PTR JournalWindow::handle(UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_SIZE:
        layOut();
        return TRUE;
    case WM_TIMER:
        if (wParam == refreshTimer)
            refresh();
        return TRUE;
    case WM_COMMAND:
        command(LOWORD(wParam), HIWORD(wParam));
        return TRUE;
    case WM_NOTIFY: {
        const auto* header = reinterpret_cast<const NMHDR*>(lParam);
        if (header->hwndFrom != list_)
            return FALSE;
        ::SetWindowLongPtrW(window_, DWLP_MSGRESULT, notify(*header, lParam));
        return TRUE;
    }
    case WM_CONTEXTMENU:
        if (reinterpret_cast<HWND>(wParam) != list_)
            return FALSE;
        showMenu(lParam);
        return TRUE;
    case WM_CLOSE:
        ::DestroyWindow(window_);
        return TRUE;
    case WM_DESTROY:
        ::KillTimer(window_, refreshTimer);
        ::PostQuitMessage(0);
        return TRUE;
    default:
        return FALSE;
    }
}

void JournalWindow::initialise()
{
    const JournalCaptions& texts = captions();
    ::SetDlgItemTextW(window_, IDC_FILE_LABEL, wide(texts.fileLabel).c_str());
    ::SetDlgItemTextW(window_, IDC_LEVEL_LABEL, wide(texts.levelLabel).c_str());
    ::SetDlgItemTextW(window_, IDC_COPY, wide(texts.copy).c_str());
    HWND level = ::GetDlgItem(window_, IDC_LEVEL);
    for (const LevelChoice& choice : levelChoices())
        ::SendMessageW(level, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(wide(choice.caption).c_str()));
    ::SendMessageW(level, CB_SETCURSEL, 0, 0);
    const std::wstring hint = wide(texts.searchHint);
    ::SendDlgItemMessageW(window_, IDC_SEARCH, EM_SETCUEBANNER, TRUE, reinterpret_cast<LPARAM>(hint.c_str()));

    // The lines in a fixed font, as the log was written; errors in its bold face.
    list_ = ::GetDlgItem(window_, IDC_LINES);
    counts_ = ::GetDlgItem(window_, IDC_COUNTS);
    ListView_SetExtendedListViewStyle(list_, LVS_EX_FULLROWSELECT | LVS_EX_DOUBLEBUFFER);
    HDC dc = ::GetDC(list_);
    const int height = -::MulDiv(9, ::GetDeviceCaps(dc, LOGPIXELSY), 72);
    for (HFONT* font : {&font_, &boldFont_}) {
        *font = ::CreateFontW(height, 0, 0, 0, font == &font_ ? FW_NORMAL : FW_BOLD, FALSE, FALSE, FALSE,
                              DEFAULT_CHARSET, OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS, DEFAULT_QUALITY,
                              FIXED_PITCH | FF_MODERN, L"Courier New");
        HGDIOBJ before = ::SelectObject(dc, *font);
        TEXTMETRICW metrics{};
        ::GetTextMetricsW(dc, &metrics);
        charWidth_ = std::max<int>(charWidth_, metrics.tmAveCharWidth);
        ::SelectObject(dc, before);
    }
    ::ReleaseDC(list_, dc);
    ::SendMessageW(list_, WM_SETFONT, reinterpret_cast<WPARAM>(font_), FALSE);
    LVCOLUMNW column{};
    column.mask = LVCF_WIDTH;
    column.cx = 100;
    ListView_InsertColumn(list_, 0, &column);

    // The system log first, then the other logs of the folder.
    HWND files = ::GetDlgItem(window_, IDC_FILES);
    names_ = logFileNames(folder_);
    for (const std::filesystem::path& name : names_)
        ::SendMessageW(files, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(name.wstring().c_str()));
    ::SendMessageW(files, CB_SETCURSEL, 0, 0);

    ::SetWindowPos(window_, nullptr, 0, 0, 1100, 650, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    openFile(0);
    ::SetTimer(window_, refreshTimer, refreshMs, nullptr);
}

void JournalWindow::layOut()
{
    if (!list_)
        return;
    RECT client{};
    ::GetClientRect(window_, &client);
    ::SendMessageW(counts_, WM_SIZE, 0, 0);
    RECT bar{};
    ::GetWindowRect(counts_, &bar);
    RECT search{};
    ::GetWindowRect(::GetDlgItem(window_, IDC_SEARCH), &search);
    ::MapWindowPoints(nullptr, window_, reinterpret_cast<POINT*>(&search), 2);
    const int top = search.bottom + 4;
    const int height = std::max<int>(0, client.bottom - top - (bar.bottom - bar.top));
    ::MoveWindow(list_, 0, top, client.right, height, TRUE);
    fitColumn();
}

void JournalWindow::command(int id, int code)
{
    if (!list_)
        return;
    if (id == IDC_LEVEL && code == CBN_SELCHANGE) {
        const auto chosen = ::SendDlgItemMessageW(window_, IDC_LEVEL, CB_GETCURSEL, 0, 0);
        const auto& choices = levelChoices();
        if (chosen < 0 || chosen >= static_cast<LRESULT>(choices.size()))
            return;
        LineFilter filter = lines_.filter();
        filter.lowestLevel = choices[static_cast<std::size_t>(chosen)].lowestLevel;
        applyFilter(std::move(filter));
    } else if (id == IDC_SEARCH && code == EN_CHANGE) {
        HWND search = ::GetDlgItem(window_, IDC_SEARCH);
        std::wstring text(static_cast<std::size_t>(::GetWindowTextLengthW(search)) + 1, L'\0');
        text.resize(static_cast<std::size_t>(::GetWindowTextW(search, text.data(), static_cast<int>(text.size()))));
        LineFilter filter = lines_.filter();
        filter.search = cp1251Of(text);
        applyFilter(std::move(filter));
    } else if (id == IDC_FILES && code == CBN_SELCHANGE) {
        const auto chosen = ::SendDlgItemMessageW(window_, IDC_FILES, CB_GETCURSEL, 0, 0);
        if (chosen >= 0)
            openFile(static_cast<std::size_t>(chosen));
    } else if (id == IDC_COPY && code == BN_CLICKED) {
        copySelection();
    }
}

LRESULT JournalWindow::notify(const NMHDR& header, LPARAM lParam)
{
    switch (header.code) {
    case LVN_GETDISPINFOW: {
        auto* info = reinterpret_cast<NMLVDISPINFOW*>(lParam);
        const int row = info->item.iItem;
        if ((info->item.mask & LVIF_TEXT) && info->item.pszText && info->item.cchTextMax > 0 && row >= 0 &&
            row < shownRows(lines_)) {
            shownText_ = wide(lines_.entry(lines_.entryOfRow(static_cast<std::size_t>(row))).text);
            ::lstrcpynW(info->item.pszText, shownText_.c_str(), info->item.cchTextMax);
        }
        return 0;
    }
    case NM_CUSTOMDRAW: {
        auto* draw = reinterpret_cast<NMLVCUSTOMDRAW*>(lParam);
        if (draw->nmcd.dwDrawStage == CDDS_PREPAINT)
            return CDRF_NOTIFYITEMDRAW;
        if (draw->nmcd.dwDrawStage != CDDS_ITEMPREPAINT)
            return CDRF_DODEFAULT;
        const auto row = static_cast<int>(draw->nmcd.dwItemSpec);
        if (row < 0 || row >= shownRows(lines_))
            return CDRF_DODEFAULT;
        const LineLook look = lookOf(lines_.entry(lines_.entryOfRow(static_cast<std::size_t>(row))).kind);
        ::SelectObject(draw->nmcd.hdc, look.bold ? boldFont_ : font_);
        // A chosen line keeps the selection's colours.
        if (!(ListView_GetItemState(list_, row, LVIS_SELECTED) & LVIS_SELECTED)) {
            draw->clrText = colourRef(look.text);
            draw->clrTextBk = look.background ? colourRef(*look.background) : ::GetSysColor(COLOR_WINDOW);
        }
        return CDRF_NEWFONT;
    }
    case LVN_KEYDOWN: {
        const auto* key = reinterpret_cast<const NMLVKEYDOWN*>(lParam);
        if (::GetKeyState(VK_CONTROL) < 0 && key->wVKey == 'C')
            copySelection();
        else if (::GetKeyState(VK_CONTROL) < 0 && key->wVKey == 'A')
            selectAll();
        return 0;
    }
    default:
        return 0;
    }
}

void JournalWindow::openFile(std::size_t index)
{
    if (index >= names_.size())
        return;
    const std::filesystem::path file = folder_ / names_[index];
    follower_ = std::make_unique<LogFollower>(file);
    lines_.clear();
    longest_ = 0;
    ListView_SetItemState(list_, -1, 0, LVIS_SELECTED | LVIS_FOCUSED);
    ListView_SetItemCountEx(list_, 0, 0);
    ::SetWindowTextW(window_, wide(windowTitle(cp1251Of(file.wstring()))).c_str());
    refresh();
    updateCounts();
}

void JournalWindow::refresh()
{
    if (!follower_)
        return;
    LogFollower::Batch batch = follower_->readNew();
    if (batch.lines.empty() && !batch.restarted)
        return;
    // The newest lines stay in view unless the operator scrolled away.
    const int before = shownRows(lines_);
    const int lastInView = ListView_GetTopIndex(list_) + ListView_GetCountPerPage(list_);
    const bool toEnd = batch.restarted || lastInView + 1 >= before;
    if (batch.restarted) {
        lines_.clear();
        longest_ = 0;
        ListView_SetItemState(list_, -1, 0, LVIS_SELECTED | LVIS_FOCUSED);
    }
    lines_.append(batch.lines);
    for (const std::string& line : batch.lines)
        longest_ = std::max(longest_, line.size());
    ListView_SetItemCountEx(list_, shownRows(lines_), batch.restarted ? 0 : LVSICF_NOINVALIDATEALL | LVSICF_NOSCROLL);
    fitColumn();
    showRows(toEnd);
    updateCounts();
}

void JournalWindow::applyFilter(LineFilter filter)
{
    const std::vector<std::size_t> chosen = selectedEntries();
    ListView_SetItemState(list_, -1, 0, LVIS_SELECTED | LVIS_FOCUSED);
    lines_.setFilter(std::move(filter));
    ListView_SetItemCountEx(list_, shownRows(lines_), 0);
    for (const std::size_t entry : chosen)
        if (const auto row = lines_.rowOfEntry(entry))
            ListView_SetItemState(list_, static_cast<int>(*row), LVIS_SELECTED, LVIS_SELECTED);
    showRows(true);
    updateCounts();
}

void JournalWindow::showRows(bool toEnd)
{
    if (toEnd && lines_.shownCount() > 0)
        ListView_EnsureVisible(list_, shownRows(lines_) - 1, FALSE);
    ::InvalidateRect(list_, nullptr, FALSE);
}

void JournalWindow::fitColumn()
{
    // One column as wide as the longest line, at least as wide as the list.
    RECT area{};
    ::GetClientRect(list_, &area);
    const auto needed = static_cast<long long>(longest_) * charWidth_ + 16;
    ListView_SetColumnWidth(list_, 0, static_cast<int>(std::clamp<long long>(needed, area.right, 30000)));
}

void JournalWindow::updateCounts()
{
    ::SetWindowTextW(counts_, wide(lines_.countsText()).c_str());
}

std::vector<std::size_t> JournalWindow::selectedEntries() const
{
    std::vector<std::size_t> entries;
    for (int row = ListView_GetNextItem(list_, -1, LVNI_SELECTED); row >= 0 && row < shownRows(lines_);
         row = ListView_GetNextItem(list_, row, LVNI_SELECTED))
        entries.push_back(lines_.entryOfRow(static_cast<std::size_t>(row)));
    return entries;
}

void JournalWindow::copySelection()
{
    const std::wstring text = wide(lines_.copyText(selectedEntries()));
    if (text.empty() || !::OpenClipboard(window_))
        return;
    ::EmptyClipboard();
    const std::size_t bytes = (text.size() + 1) * sizeof(wchar_t);
    if (HGLOBAL memory = ::GlobalAlloc(GMEM_MOVEABLE, bytes)) {
        std::memcpy(::GlobalLock(memory), text.c_str(), bytes);
        ::GlobalUnlock(memory);
        if (!::SetClipboardData(CF_UNICODETEXT, memory))
            ::GlobalFree(memory);
    }
    ::CloseClipboard();
}

void JournalWindow::selectAll()
{
    ListView_SetItemState(list_, -1, LVIS_SELECTED, LVIS_SELECTED);
}

void JournalWindow::showMenu(LPARAM at)
{
    POINT point{GET_X_LPARAM(at), GET_Y_LPARAM(at)};
    if (at == -1) {   // from the keyboard: at the list's corner
        RECT rect{};
        ::GetWindowRect(list_, &rect);
        point = {rect.left + 8, rect.top + 8};
    }
    const JournalCaptions& texts = captions();
    HMENU menu = ::CreatePopupMenu();
    ::AppendMenuW(menu, MF_STRING, IDM_COPY, wide(texts.copy).c_str());
    ::AppendMenuW(menu, MF_STRING, IDM_SELECT_ALL, wide(texts.selectAll).c_str());
    const int chosen = static_cast<int>(
        ::TrackPopupMenu(menu, TPM_RETURNCMD | TPM_RIGHTBUTTON, point.x, point.y, 0, window_, nullptr));
    ::DestroyMenu(menu);
    if (chosen == IDM_COPY)
        copySelection();
    else if (chosen == IDM_SELECT_ALL)
        selectAll();
}

} // namespace vx::journal
