#include "support/win32/dialog_driver.h"

#include <commctrl.h>
#include <gtest/gtest.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <vector>

#include "platform/win32/wide_text.h"

namespace vx::test {

namespace {

using Clock = std::chrono::steady_clock;

using platform::win32::narrow;
using platform::win32::widen;

std::string windowText(HWND window)
{
    wchar_t text[4096] = {};
    ::SendMessageW(window, WM_GETTEXT, 4096, reinterpret_cast<LPARAM>(text));
    return narrow(text);
}

struct Search {
    DWORD process;
    std::wstring title;
    HWND found = nullptr;
};

// A visible dialog (class #32770) of `process`.
bool isDialogOf(HWND window, DWORD process)
{
    DWORD owner = 0;
    ::GetWindowThreadProcessId(window, &owner);
    wchar_t kind[16] = {};
    ::GetClassNameW(window, kind, 16);
    return owner == process && std::wstring(kind) == L"#32770" && ::IsWindowVisible(window);
}

BOOL CALLBACK findOurs(HWND window, LPARAM context)
{
    auto* search = reinterpret_cast<Search*>(context);
    if (!isDialogOf(window, search->process))
        return TRUE;
    wchar_t title[512] = {};
    ::GetWindowTextW(window, title, 512);
    if (search->title.empty() || search->title == title) {
        search->found = window;
        return FALSE;
    }
    return TRUE;
}

HWND findDialog(DWORD process, const std::wstring& title)
{
    Search search{process, title, nullptr};
    ::EnumWindows(findOurs, reinterpret_cast<LPARAM>(&search));
    return search.found;
}

BOOL CALLBACK cancelOne(HWND window, LPARAM any)
{
    if (isDialogOf(window, ::GetCurrentProcessId())) {
        ::PostMessageW(window, WM_COMMAND, IDCANCEL, 0);
        *reinterpret_cast<bool*>(any) = true;
    }
    return TRUE;
}

// Cancels every dialog of the process; false when there was none.
bool cancelAll()
{
    bool any = false;
    ::EnumWindows(cancelOne, reinterpret_cast<LPARAM>(&any));
    return any;
}

void notifyParent(HWND dialog, int id, UINT code)
{
    ::SendMessageW(dialog, WM_COMMAND, MAKEWPARAM(id, code), reinterpret_cast<LPARAM>(::GetDlgItem(dialog, id)));
}

} // namespace

HWND waitForDialog(const char* title, std::chrono::milliseconds limit)
{
    return waitForDialogOf(::GetCurrentProcessId(), title, limit);
}

HWND waitForDialogOf(DWORD process, const char* title, std::chrono::milliseconds limit)
{
    const std::wstring wanted = widen(title);
    const auto end = Clock::now() + limit;
    while (Clock::now() < end) {
        if (HWND found = findDialog(process, wanted))
            return found;
        std::this_thread::sleep_for(20ms);
    }
    return nullptr;
}

bool waitGone(HWND window, std::chrono::milliseconds limit)
{
    HWND owner = ::GetWindow(window, GW_OWNER);
    const auto end = Clock::now() + limit;
    while (Clock::now() < end) {
        if (!::IsWindow(window) || !::IsWindowVisible(window)) {
            // The owner's thread handles a sent message only once what
            // followed the closed window has run and its loop is back: then
            // the owner shows what the closed window gave it.
            if (owner) {
                DWORD_PTR result = 0;
                ::SendMessageTimeoutW(owner, WM_NULL, 0, 0, SMTO_NORMAL, static_cast<UINT>(limit.count()), &result);
            }
            return true;
        }
        std::this_thread::sleep_for(20ms);
    }
    return false;
}

void typeText(HWND dialog, int id, const char* text)
{
    ::SendMessageW(::GetDlgItem(dialog, id), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(widen(text).c_str()));
}

std::string shownText(HWND dialog, int id)
{
    return windowText(::GetDlgItem(dialog, id));
}

void click(HWND dialog, int id)
{
    // Sent, so that what the click does has been done on return; a click
    // that opens a modal box holds the dialog's thread, and the wait ends
    // at its limit with the box up.
    DWORD_PTR result = 0;
    ::SendMessageTimeoutW(::GetDlgItem(dialog, id), BM_CLICK, 0, 0, SMTO_NORMAL, 500, &result);
}

void choose(HWND dialog, int id, int index)
{
    HWND box = ::GetDlgItem(dialog, id);
    wchar_t kind[16] = {};
    ::GetClassNameW(box, kind, 16);
    const bool combo = ::lstrcmpiW(kind, L"ComboBox") == 0;
    ::SendMessageW(box, combo ? CB_SETCURSEL : LB_SETCURSEL, static_cast<WPARAM>(index), 0);
    notifyParent(dialog, id, combo ? CBN_SELCHANGE : LBN_SELCHANGE);
}

void pick(HWND dialog, int id, const SYSTEMTIME& time)
{
    HWND picker = ::GetDlgItem(dialog, id);
    SYSTEMTIME value = time;
    ::SendMessageW(picker, DTM_SETSYSTEMTIME, GDT_VALID, reinterpret_cast<LPARAM>(&value));
    NMDATETIMECHANGE change{};
    change.nmhdr.hwndFrom = picker;
    change.nmhdr.idFrom = static_cast<UINT_PTR>(id);
    change.nmhdr.code = DTN_DATETIMECHANGE;
    change.dwFlags = GDT_VALID;
    change.st = time;
    ::SendMessageW(dialog, WM_NOTIFY, static_cast<WPARAM>(id), reinterpret_cast<LPARAM>(&change));
}

bool isChecked(HWND dialog, int id)
{
    return ::SendMessageW(::GetDlgItem(dialog, id), BM_GETCHECK, 0, 0) == BST_CHECKED;
}

bool isEnabled(HWND dialog, int id)
{
    return ::IsWindowEnabled(::GetDlgItem(dialog, id)) != FALSE;
}

bool isShown(HWND dialog, int id)
{
    return ::IsWindowVisible(::GetDlgItem(dialog, id)) != FALSE;
}

int selectedIndex(HWND dialog, int id)
{
    HWND box = ::GetDlgItem(dialog, id);
    wchar_t kind[16] = {};
    ::GetClassNameW(box, kind, 16);
    if (::lstrcmpiW(kind, L"ComboBox") == 0)
        return static_cast<int>(::SendMessageW(box, CB_GETCURSEL, 0, 0));
    if (::lstrcmpiW(kind, L"ListBox") == 0)
        return static_cast<int>(::SendMessageW(box, LB_GETCURSEL, 0, 0));
    return static_cast<int>(::SendMessageW(box, LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_SELECTED));
}

std::string answerMessageBox(const char* title, int button, std::chrono::milliseconds limit)
{
    HWND box = waitForDialog(title, limit);
    if (!box)
        return {};
    // A message box's text is its static 0xFFFF.
    const std::string text = windowText(::GetDlgItem(box, 0xFFFF));
    ::PostMessageW(box, WM_COMMAND, static_cast<WPARAM>(button), 0);
    waitGone(box, limit);
    return text;
}

void shoot(HWND window, const char* name)
{
    const char* folder = std::getenv("VEXLANE_SHOTS");
    if (!folder || !::IsWindow(window))
        return;
    ::RedrawWindow(window, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW | RDW_ALLCHILDREN);
    std::this_thread::sleep_for(200ms);
    RECT rect{};
    ::GetWindowRect(window, &rect);
    const int width = rect.right - rect.left;
    const int height = rect.bottom - rect.top;
    if (width <= 0 || height <= 0)
        return;
    HDC screen = ::GetDC(nullptr);
    HDC memory = ::CreateCompatibleDC(screen);
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof(BITMAPINFOHEADER);
    info.bmiHeader.biWidth = width;
    info.bmiHeader.biHeight = height;   // bottom-up, as a BMP file stores it
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    info.bmiHeader.biCompression = BI_RGB;
    void* bits = nullptr;
    HBITMAP bitmap = ::CreateDIBSection(memory, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
    HGDIOBJ old = ::SelectObject(memory, bitmap);
    ::BitBlt(memory, 0, 0, width, height, screen, rect.left, rect.top, SRCCOPY);
    ::SelectObject(memory, old);
    const DWORD size = static_cast<DWORD>(width) * static_cast<DWORD>(height) * 4;
    BITMAPFILEHEADER file{};
    file.bfType = 0x4D42;
    file.bfOffBits = sizeof(BITMAPFILEHEADER) + sizeof(BITMAPINFOHEADER);
    file.bfSize = file.bfOffBits + size;
    std::ofstream out(std::string(folder) + "/" + name + ".bmp", std::ios::binary);
    out.write(reinterpret_cast<const char*>(&file), sizeof file);
    out.write(reinterpret_cast<const char*>(&info.bmiHeader), sizeof info.bmiHeader);
    out.write(static_cast<const char*>(bits), size);
    ::DeleteObject(bitmap);
    ::DeleteDC(memory);
    ::ReleaseDC(nullptr, screen);
}

DialogScript::DialogScript(std::function<void()> script, std::chrono::milliseconds limit)
{
    auto done = std::make_shared<std::atomic<bool>>(false);
    thread_ = std::thread([this, script = std::move(script), done] {
        try {
            script();
            finished_ = !::testing::Test::HasFailure();
        } catch (...) {
            ADD_FAILURE() << "the dialog script threw";
        }
        done->store(true);
        // A script that failed half-way leaves its dialogs open.
        for (int i = 0; i < 20 && !finished_ && cancelAll(); ++i)
            std::this_thread::sleep_for(100ms);
    });
    // A watchdog: past the limit every dialog of the process is cancelled.
    std::thread([done, limit] {
        const auto end = Clock::now() + limit;
        while (!done->load() && Clock::now() < end)
            std::this_thread::sleep_for(50ms);
        for (int i = 0; i < 20 && !done->load() && cancelAll(); ++i)
            std::this_thread::sleep_for(100ms);
    }).detach();
}

DialogScript::~DialogScript()
{
    if (thread_.joinable())
        thread_.join();
}

bool DialogScript::finished()
{
    if (thread_.joinable())
        thread_.join();
    return finished_;
}

} // namespace vx::test
