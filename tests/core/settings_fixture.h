#pragma once
// The settings commands' test world: a manager state on a temporary config
// folder; requests, autorun, spawns, messages, quota and stream rewrites are
// noted in order, and tasks run at once. The dialogs are the test's to set.
#include <filesystem>
#include <functional>
#include <future>
#include <string>
#include <vector>

#include "config/text_codec.h"
#include "core/settings_commands.h"
#include "core/startup.h"
#include "support/captured_stderr.h"
#include "support/temp_dir.h"
#include "support/text_file.h"

namespace vx::test {

struct SettingsWorld {
    CapturedStderr quiet;   // the first save finds no file to keep a copy of
    TempDir dir;
    core::AppState state;
    core::ProcessActions actions;
    core::SettingsHooks hooks;
    std::vector<std::string> calls;
    bool autorunWorks = true;

    SettingsWorld()
    {
        std::filesystem::create_directories(dir.path() / "configs");
        state.baseDirectory = dir.path();
        state.ConfigDirectory = (dir.path() / "configs").string();
        state.liveMainConfig.systemLogPath = dir.path().string();
        state.liveMainConfig.recogLogPath = dir.path().string();
        actions.saveMainConfig = [this] {
            calls.push_back("save");
            return core::saveMainConfig(state);
        };
        auto note = [this](const char* service) {
            return [this, service](const std::string& path, bool restart) {
                calls.push_back(std::string(service) + " " + path + (restart ? " restart" : ""));
            };
        };
        actions.threadRequests = note("recognition");
        actions.threadRequestsToDirect = note("control");
        actions.threadRequestsToMes = note("mes");
        actions.launch = [](std::function<void()> task) {
            task();
            std::promise<void> done;
            done.set_value();
            return done.get_future();
        };
        hooks.spawn = [this](std::function<void()> task) {
            calls.push_back("spawn");
            task();
        };
        hooks.setAutorun = [this](const std::string& name, const std::filesystem::path&, bool enabled) {
            calls.push_back("autorun " + name + (enabled ? " on" : " off"));
            return autorunWorks;
        };
        hooks.showMessage = [this](const std::string& title, const std::string& text) {
            calls.push_back("message " + config::cp1251ToUtf8(title) + ": " + config::cp1251ToUtf8(text));
        };
        hooks.replaceVideoQuota = [this] { calls.push_back("quota"); };
        hooks.rewriteAllStreams = [this] { calls.push_back("rewrite streams"); };
    }
    SettingsWorld(const SettingsWorld&) = delete;
    SettingsWorld& operator=(const SettingsWorld&) = delete;

    // A config file as text (line ends as LF), and the main config's bytes.
    std::string file(const char* name) const { return readText(dir.path() / "configs" / name); }
    std::string mainFile() const { return readFileBytes(dir.path() / "configs" / "vx_main_config.json"); }
    // The status text in UTF-8.
    std::string status() const { return config::cp1251ToUtf8(state.status.get()); }
};

} // namespace vx::test
