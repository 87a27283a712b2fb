#pragma once
// The commands of the main window outside the tiles: the menu, the tray's
// autorun item and the journal button. The window binds these to its
// controls; what a command shows or opens comes in through the hooks, so the
// logic runs without a window.
#include <filesystem>
#include <functional>
#include <memory>
#include <string>

#include "core/process_actions.h"
#include "state/app_state.h"
#include "platform/process.h"

namespace vx::core {

// The ids the menu dispatcher takes; any other id ends it at once.
enum MainMenuCommand : int {
    menuSettings = 10002,
    menuExit = 10003,
    menuOpenSystemLog = 10004,
    menuOpenRecogLog = 10005,
    menuHelpFile = 10006,
    menuAbout = 10007,
};

struct MainCommandHooks {
    // The settings dialog (its own command); null until it exists.
    std::function<void()> openSettings;
    // DestroyWindow on the main window: the teardown.
    std::function<void()> destroyWindow;
    // A folder or a file shown by the desktop's default program.
    std::function<void(const std::filesystem::path& folder)> openFolder;
    std::function<void(const std::filesystem::path& file)> openFile;
    // A message box under `title` with an error icon; both texts 1251.
    std::function<void(const std::string& title, const std::string& text)> showMessage;
    // The About dialog, modal; the text is aboutText().
    std::function<void(const std::string& text)> showAbout;
    // platform::setAutorun unless a test says otherwise.
    std::function<bool(const std::string& name, const std::filesystem::path& path, bool enabled)> setAutorun;
    // platform::startProcess unless a test says otherwise.
    std::function<std::unique_ptr<platform::StartedProcess>(const platform::ProcessStartInfo&)> startProcess;
    // Runs a task whose end nobody waits for (a detached thread).
    std::function<void(std::function<void()>)> runDetached;
};

// The hooks that reach the system; the window adds its own.
MainCommandHooks systemCommandHooks();

// The menu dispatcher: ids 10002 to 10007.
void runMenuCommand(AppState& state, int id, const MainCommandHooks& hooks);

// "../doc/Vexlane.pdf" relative to baseDirectory, as a full path.
std::filesystem::path helpFilePath(const std::filesystem::path& baseDirectory);

// The About dialog's text (1251): the program and its version.
std::string aboutText(const AppState& state);

// The path the autorun entry runs: baseDirectory, a separator, the running
// executable's file name.
std::filesystem::path autorunProgramPath(const std::filesystem::path& baseDirectory);

// The tray's 11004: autoRunManager inverted, the main config saved, the entry
// set to the new value. When that fails the flag goes back in memory only
// (the file keeps the value that failed until the next save) and the
// operator is told. The tray's tick follows the flag the next time the menu
// opens. Returns whether the entry was set.
bool toggleTrayAutorun(AppState& state, const ProcessActions& actions, const MainCommandHooks& hooks);

// "vxJournal", blank, the quoted log folder, blank, the quoted config
// folder, then " hide" (all 1251).
std::string journalCommandLine(const std::string& systemLogPath, const std::string& configDirectory);

// The journal viewer's start: that command line (UTF-8), started in
// baseDirectory and looked for there first.
platform::ProcessStartInfo journalStartInfo(const AppState& state);
// Starts it without waiting; the result is ignored. Logs "JournalStart".
void journalStart(const platform::ProcessStartInfo& info, const MainCommandHooks& hooks);

// The "Журнал" button: journalStart as a task nobody waits for, then the
// status text. Pressed twice, it starts two viewers.
void onJournalCommand(AppState& state, const MainCommandHooks& hooks);

} // namespace vx::core
