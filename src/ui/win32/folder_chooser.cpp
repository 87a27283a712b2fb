#include "ui/win32/folder_chooser.h"

#include <shlobj.h>

#include "ui/win32/win_text.h"

namespace vx::ui::win32 {

namespace {

// Opens the browser at the start folder, handed in as the callback's data.
int CALLBACK startAt(HWND browser, UINT message, LPARAM, LPARAM start)
{
    if (message == BFFM_INITIALIZED && start)
        ::SendMessageW(browser, BFFM_SETSELECTIONW, TRUE, start);
    return 0;
}

} // namespace

dialogs::FolderChooser systemFolderChooser(HWND owner)
{
    return [owner](const std::string& start) -> std::optional<std::string> {
        // The browser of the new style runs on COM in this thread.
        const HRESULT com = ::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
        const std::wstring from = wideOf(start);
        HWND front = ::GetActiveWindow();
        BROWSEINFOW info{};
        info.hwndOwner = front ? front : owner;
        info.ulFlags = BIF_RETURNONLYFSDIRS | BIF_NEWDIALOGSTYLE;
        info.lpfn = startAt;
        info.lParam = from.empty() ? 0 : reinterpret_cast<LPARAM>(from.c_str());
        std::optional<std::string> picked;
        if (PIDLIST_ABSOLUTE item = ::SHBrowseForFolderW(&info)) {
            wchar_t path[MAX_PATH] = {};
            if (::SHGetPathFromIDListW(item, path))
                picked = cp1251Of(path);
            ::CoTaskMemFree(item);
        }
        if (SUCCEEDED(com))
            ::CoUninitialize();
        return picked;
    };
}

} // namespace vx::ui::win32
