#include "core/startup.h"

#include <memory>

#include "config/config_file.h"
#include "config/control_config.h"
#include "config/main_config.h"
#include "config/text_codec.h"
#include "core/main_commands.h"
#include "core/save_failure.h"
#include "maintenance/crash_capture.h"
#include "maintenance/settings_migration.h"
#include "maintenance/system_log.h"

namespace vx::core {
namespace {

using maintenance::LogBuffer;
using maintenance::LogMode;

const char* const messageTitle = "Сообщение";
const char* const mainConfigFailed =
    "Конфигурационный файл не может быть загружен! Система не будет работать правильно!"
    "Выйдите из программы и проверьте конфиг файл vx_main_config.json!"
    "Можете попробовать скопировать а него файл предыдущей версии vx_main_config.json.tmp!";
const char* const controlConfigFailed =
    "Конфигурационный файл для глобальных настроек управления не может быть загружен! "
    "Система не будет работать правильно!";

void show(const StartupHooks& hooks, const char* title, const char* text)
{
    if (hooks.showMessage)
        hooks.showMessage(config::utf8ToCp1251(title), config::utf8ToCp1251(text));
}

// A log file below the configured folder (1251 text) as a native path.
std::filesystem::path logFilePath(const std::string& folder, const char* name)
{
    return config::toNativePath(config::configFilePath(folder, name));
}

} // namespace

bool loadMainConfigStep(AppState& state, const StartupHooks& hooks)
{
    const std::string base = narrowPath(state.baseDirectory);
    state.ConfigDirectory = config::configFilePath(base, "configs");
    if (!config::loadConfig(base, state.ConfigDirectory, state.storedMainConfig, state.mainConfigFolders)) {
        show(hooks, messageTitle, mainConfigFailed);
        if (hooks.postTeardown)
            hooks.postTeardown();
        return false;
    }
    state.liveMainConfig = state.storedMainConfig;
    if (state.liveMainConfig.globalRestart)
        state.restartControl = 10;
    if (state.liveMainConfig.autoRunManager && hooks.setAutorunTick)
        hooks.setAutorunTick(true);
    return true;
}

void openLogs(AppState& state)
{
    const config::MainConfig& c = state.liveMainConfig;
    try {
        maintenance::setSystemLog(
            std::make_unique<LogBuffer>(logFilePath(c.systemLogPath, "VexlaneLog.txt"), LogMode::archiveTruncate));
        maintenance::attachToStandardError(*maintenance::systemLog());
        // The crash texts follow standard error into the log.
        if (maintenance::systemLog()->isOpen())
            maintenance::sendCrashTextsTo(logFilePath(c.systemLogPath, "VexlaneLog.txt"));
        maintenance::systemLog()->writeLine(state.versionText);
    } catch (const std::exception&) {
        // The archive step failed and said so on standard error. Rather than
        // let that end the manager, it runs on without a system log.
    }
    if (c.perfLog)
        maintenance::setPerfLog(
            std::make_unique<LogBuffer>(logFilePath(c.systemLogPath, "perf.txt"), LogMode::appendStart));
}

void setLogThreshold(AppState& state)
{
    if (LogBuffer* log = maintenance::systemLog())
        log->setMinLevel(maintenance::clampLogLevel(state.liveMainConfig.systemLevel));
    VX_LOG(maintenance::logTrace, "ConfigGlobal ok!");
}

void loadControlConfigStep(AppState& state, const StartupHooks& hooks)
{
    if (config::loadControlGlobal(state.ConfigDirectory, state.controlConfig)) {
        VX_LOG(maintenance::logTrace, "loadControlGlobal ok!");
        return;
    }
    VX_LOG(maintenance::logError, "loadControlGlobal error!");
    show(hooks, messageTitle, controlConfigFailed);
}

void checkSettingsMigrationStep(AppState& state, const std::filesystem::path& userData)
{
    state.previousInstallPath = state.baseDirectory.string();
    const std::filesystem::path earlier = maintenance::checkSettingsMigration(userData, state.baseDirectory);
    state.previousInstallPath = earlier.empty() ? std::string() : earlier.string();
}

void migrateFoldersStep(AppState& state, const StartupHooks& hooks)
{
    if (!state.migrateFolders)
        return;
    const std::string base = narrowPath(state.baseDirectory);
    state.ConfigDirectory = config::configFilePath(base, "configs");
    if (config::loadConfig(base, state.ConfigDirectory, state.storedMainConfig, state.mainConfigFolders))
        state.liveMainConfig = state.storedMainConfig;
    config::MainConfig& c = state.liveMainConfig;
    c.systemLogPath = config::configFilePath(base, "logs");
    c.recogLogPath = c.systemLogPath;
    c.reportsPath = config::configFilePath(base, "reports");
    c.videoPath = config::configFilePath(base, "videos");
    saveMainConfig(state);
    if (c.autoRunManager && hooks.setAutorun)
        hooks.setAutorun("Vexlane", autorunProgramPath(state.baseDirectory), true);
}

bool saveMainConfig(AppState& state)
{
    state.storedMainConfig = state.liveMainConfig;
    return noteSave(config::saveConfig(state.ConfigDirectory, state.storedMainConfig, state.streams.collectIds(),
                                       state.streams.collectPlanned()),
                    config::mainConfigFileName);
}

} // namespace vx::core
