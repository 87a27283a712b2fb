#pragma once
// The settings commands of the main window: each opens its dialog, then
// saves what changed and tells the service that must know. The dialogs are
// opened through the window layer, which the caller hands in.
#include <filesystem>
#include <functional>
#include <string>

#include "core/process_actions.h"
#include "state/app_state.h"

namespace vx::core {

// "Списки" (1045): the white list manager, then the status bar is cleared.
// The manager sends no request of its own.
void editWhiteLists(AppState& state, const std::function<void()>& openManager);

// The settings dialogs as the window runs them, each on the record it is
// handed; true when the dialog ended with OK.
struct SettingsDialogs {
    std::function<bool(config::MainConfig& record)> settings;                 // 136 "Настройки"
    std::function<bool(config::MainConfig& record)> processControl;           // 140 "Контроль"
    std::function<bool(config::RecognitionSrvConfig& working)> recognition;   // 122
    std::function<bool(config::ControlSrvConfig& working)> control;           // 142
    // 153; `channelsChanged` is set when a slot was accepted with OK.
    std::function<bool(config::MessengersConfig& working, bool& channelsChanged)> messengers;
};

struct SettingsHooks {
    SettingsDialogs dialogs;
    // platform::setAutorun unless a test says otherwise.
    std::function<bool(const std::string& name, const std::filesystem::path& path, bool enabled)> setAutorun;
    // A message box under `title` with an error icon; both texts 1251.
    std::function<void(const std::string& title, const std::string& text)> showMessage;
    // Runs a request on the request group, never waited for.
    std::function<void(std::function<void()>)> spawn;
    // Writes every stream's file anew, since the streams carry the services'
    // ports.
    std::function<void()> rewriteAllStreams;
    // A fresh video quota object from videoPath and maxSizeVideoDirectoryMb,
    // replacing the old one under videoQuotaMutex.
    std::function<void()> replaceVideoQuota;
};

// setAutorun, spawn on the request group, createVideoQuota and
// rewriteAllStreams on `state`.
SettingsHooks systemSettingsHooks(AppState& state);

// "Настройки" (10002). The autorun entry is set before the file is written,
// so a failure isn't written: the old value comes back and the message
// shows, and the rest goes on.
void editSettings(AppState& state, const ProcessActions& actions, const SettingsHooks& hooks);

// "Мессенджеры" (1038). Channels accepted in the inner dialog are saved
// even when the outer one was cancelled, but then nothing is restarted.
void editMessengers(AppState& state, const ProcessActions& actions, const SettingsHooks& hooks);

// "Распознавание" (1039): save, restart the service, and rewrite every
// stream file when the port changed.
void editRecognitionService(AppState& state, const ProcessActions& actions, const SettingsHooks& hooks);

// "Управление" (1044): the same for the control service.
void editControlService(AppState& state, const ProcessActions& actions, const SettingsHooks& hooks);

// "Контроль" (1087): globalRestart saved; the watch follows its change.
void editProcessControl(AppState& state, const ProcessActions& actions, const SettingsHooks& hooks);

} // namespace vx::core
