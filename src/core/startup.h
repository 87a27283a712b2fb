#pragma once
// The configuration steps of the create handler, apart from the window:
// main config, the live copy, the logs, the threshold and the control
// config. The window calls them in order; tests drive them with their own
// AppState and hooks.
#include <filesystem>
#include <functional>
#include <string>

#include "state/app_state.h"

namespace vx::core {

struct StartupHooks {
    // A message box under `title` with an error icon; both texts are 1251.
    std::function<void(const std::string& title, const std::string& text)> showMessage;
    // Posts the teardown to the window (it runs later, from the event loop).
    std::function<void()> postTeardown;
    // Sets the tick of the tray's "Автозагрузка" item.
    std::function<void(bool ticked)> setAutorunTick;
    // Stores or removes the autorun entry (platform::setAutorun).
    std::function<bool(const std::string& name, const std::filesystem::path& path, bool enabled)> setAutorun;
};

// The settings migration check at entry: previousInstallPath starts as this
// installation's folder and becomes the folder of the last run when that was
// another installation with its configs still there; otherwise it is
// emptied. The user data folder remembers this installation from now on.
void checkSettingsMigrationStep(AppState& state, const std::filesystem::path& userData);

// After the operator took the earlier settings with the folders box ticked:
// the main config again from the configs copied, the log, report and video
// folders pointed at this installation and saved, and the autorun entry
// made anew for this executable when it is on. Nothing without migrateFolders.
void migrateFoldersStep(AppState& state, const StartupHooks& hooks);

// ConfigDirectory is set from baseDirectory, then loadConfig. On failure the
// operator gets the main config message under "Сообщение", the teardown is
// posted, and the result is false: the create handler stops there. On
// success the stored copy goes to the live one, globalRestart switches the
// watch on (restartControl 10), autoRunManager ticks the tray item.
bool loadMainConfigStep(AppState& state, const StartupHooks& hooks);

// The system log on systemLogPath/VexlaneLog.txt (archived, then truncated),
// put behind standard error, with the version as its second line; perf.txt
// beside it when perfLog is set. A log that fails in its archive step stays
// away: the reason went to standard error and the manager runs on without.
void openLogs(AppState& state);

// The threshold from systemLevel, clamped to 0..5, then "ConfigGlobal ok!".
void setLogThreshold(AppState& state);

// loadControlGlobal with its log line; when the file can't be had, the
// control config message under "Сообщение". Start-up goes on either way.
void loadControlConfigStep(AppState& state, const StartupHooks& hooks);

// Whenever a main config field changes: the live copy becomes the stored
// one, and the stored one is written with the stream table's identifiers
// and planned flags, in table order. False (and an ERROR line) when the file
// was not saved.
bool saveMainConfig(AppState& state);

} // namespace vx::core
