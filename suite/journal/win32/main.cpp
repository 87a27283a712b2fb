// vxJournal.exe: the journal viewer the manager's "Журнал" button starts as
//   vxJournal.exe "<log folder>" "<config folder>" hide
// It shows the system log of the log folder and follows it as it grows. The
// config folder is taken and not needed; "hide" asked the first platform's
// viewer to hide its console, which a window program doesn't have.
#include <windows.h>

#include <commctrl.h>
#include <shellapi.h>

#include <filesystem>

#include "journal_window.h"

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE, PWSTR, int show)
{
    INITCOMMONCONTROLSEX controls{sizeof controls, ICC_LISTVIEW_CLASSES | ICC_BAR_CLASSES | ICC_STANDARD_CLASSES};
    ::InitCommonControlsEx(&controls);

    // Without arguments: the logs folder beside the program.
    std::filesystem::path folder;
    int count = 0;
    if (LPWSTR* words = ::CommandLineToArgvW(::GetCommandLineW(), &count)) {
        if (count > 1)
            folder = words[1];
        ::LocalFree(words);
    }
    if (folder.empty()) {
        wchar_t self[MAX_PATH * 4];
        const DWORD n = ::GetModuleFileNameW(nullptr, self, MAX_PATH * 4);
        folder = std::filesystem::path(std::wstring(self, n)).parent_path() / L"logs";
    }

    vx::journal::JournalWindow window(folder);
    if (!window.open(instance, show))
        return 1;
    MSG message{};
    while (::GetMessageW(&message, nullptr, 0, 0) > 0) {
        if (!::IsDialogMessageW(window.window(), &message)) {
            ::TranslateMessage(&message);
            ::DispatchMessageW(&message);
        }
    }
    return static_cast<int>(message.wParam);
}
