#pragma once
// Drives this process's dialogs as an operator would, from a thread of its
// own, with the messages their controls take: the test opens a dialog on its
// main thread (modal, through the program's own path) and a script on the
// driver thread types, clicks, chooses and presses OK. Texts are UTF-8.
#include <windows.h>

#include <chrono>
#include <functional>
#include <string>
#include <thread>

namespace vx::test {

using namespace std::chrono_literals;

// The dialog of this process titled `title` (class #32770), waited for; null
// when none came within `limit`.
HWND waitForDialog(const char* title, std::chrono::milliseconds limit = 10s);
// The same for a dialog of another process (the manager under test).
HWND waitForDialogOf(DWORD process, const char* title, std::chrono::milliseconds limit = 10s);
// True once `window` is gone (or hidden) within `limit`, and its owner has
// done what follows its closing.
bool waitGone(HWND window, std::chrono::milliseconds limit = 10s);

// WM_SETTEXT: the edit tells its dialog EN_CHANGE, as after typing.
void typeText(HWND dialog, int id, const char* text);
std::string shownText(HWND dialog, int id);
// Posts BM_CLICK: what the click opens (a message box, a nested dialog)
// must not hold the driver.
void click(HWND dialog, int id);
// Selects an item of a combo or list box and tells the dialog as a
// selection by the operator does.
void choose(HWND dialog, int id, int index);
// Sets a date or time picker and tells the dialog DTN_DATETIMECHANGE.
void pick(HWND dialog, int id, const SYSTEMTIME& time);
bool isChecked(HWND dialog, int id);
bool isEnabled(HWND dialog, int id);
bool isShown(HWND dialog, int id);
int selectedIndex(HWND dialog, int id);

// The message box in front titled `title`: its text, after pressing
// `button` (IDOK, IDYES, IDNO, IDCANCEL). Empty when none came.
std::string answerMessageBox(const char* title, int button = IDOK, std::chrono::milliseconds limit = 10s);

// With VEXLANE_SHOTS naming a folder: the window as it stands on the
// screen, as <folder>/<name>.bmp.
void shoot(HWND window, const char* name);

// Runs a script on a thread of its own while the test's main thread runs a
// modal dialog. A script that throws, or runs past `limit`, cancels every
// dialog of the process, so the main thread's loop ends and the test fails
// instead of hanging. Joined by the destructor.
class DialogScript {
public:
    explicit DialogScript(std::function<void()> script, std::chrono::milliseconds limit = 30s);
    ~DialogScript();
    DialogScript(const DialogScript&) = delete;
    DialogScript& operator=(const DialogScript&) = delete;
    // True when the script ran to its end.
    bool finished();

private:
    std::thread thread_;
    bool finished_ = false;
};

} // namespace vx::test
