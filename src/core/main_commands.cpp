#include "core/main_commands.h"

#include <thread>

#include "config/config_file.h"
#include "config/text_codec.h"
#include "maintenance/system_log.h"
#include "platform/autorun.h"
#include "platform/paths.h"

namespace vx::core {

namespace {

std::string cp1251(const char* utf8)
{
    return config::utf8ToCp1251(utf8);
}

// A log folder may be written relative ("logs"): it lies below the program's
// folder, and the desktop's opener wants it as a full path.
std::filesystem::path folderOf(const std::string& cp1251Text, const std::filesystem::path& baseDirectory)
{
    const std::filesystem::path folder = config::toNativePath(cp1251Text);
    return folder.is_relative() ? (baseDirectory / folder).lexically_normal() : folder;
}

} // namespace

MainCommandHooks systemCommandHooks()
{
    MainCommandHooks hooks;
    hooks.setAutorun = platform::setAutorun;
    hooks.startProcess = platform::startProcess;
    hooks.runDetached = [](std::function<void()> task) { std::thread(std::move(task)).detach(); };
    return hooks;
}

std::filesystem::path helpFilePath(const std::filesystem::path& baseDirectory)
{
    return std::filesystem::absolute(baseDirectory / ".." / "doc" / "Vexlane.pdf").lexically_normal();
}

std::string aboutText(const AppState& state)
{
    return cp1251("Vexlane Распознавание автомобильных номеров\nВерсия ") + state.versionText;
}

void runMenuCommand(AppState& state, int id, const MainCommandHooks& hooks)
{
    if (id < menuSettings || id > menuAbout)
        return;
    switch (id) {
    case menuSettings:
        if (hooks.openSettings)
            hooks.openSettings();
        break;
    case menuExit:
        if (hooks.destroyWindow)
            hooks.destroyWindow();
        break;
    case menuOpenSystemLog:
        if (hooks.openFolder)
            hooks.openFolder(folderOf(state.liveMainConfig.systemLogPath, state.baseDirectory));
        break;
    case menuOpenRecogLog:
        if (hooks.openFolder)
            hooks.openFolder(folderOf(state.liveMainConfig.recogLogPath, state.baseDirectory));
        break;
    case menuHelpFile: {
        const std::filesystem::path help = helpFilePath(state.baseDirectory);
        if (platform::fileExists(help)) {
            if (hooks.openFile)
                hooks.openFile(help);
        } else if (hooks.showMessage) {
            hooks.showMessage(cp1251("Сообщение"), cp1251("Файл справки не найден"));
        }
        break;
    }
    case menuAbout:
        if (hooks.showAbout)
            hooks.showAbout(aboutText(state));
        // The licence role may ask for the end while the dialog was open.
        if (state.shuttingDown && hooks.destroyWindow)
            hooks.destroyWindow();
        break;
    default:
        break;
    }
}

std::filesystem::path autorunProgramPath(const std::filesystem::path& baseDirectory)
{
    auto joined = baseDirectory.native();
    joined += static_cast<std::filesystem::path::value_type>(platform::pathSeparator);
    joined += platform::executablePath().filename().native();
    return std::filesystem::path(joined);
}

bool toggleTrayAutorun(AppState& state, const ProcessActions& actions, const MainCommandHooks& hooks)
{
    bool& flag = state.liveMainConfig.autoRunManager;
    flag = !flag;
    if (actions.saveMainConfig)
        actions.saveMainConfig();
    const bool done = hooks.setAutorun && hooks.setAutorun("Vexlane", autorunProgramPath(state.baseDirectory), flag);
    if (done)
        return true;
    flag = !flag;
    if (hooks.showMessage)
        hooks.showMessage(cp1251("Сообщение"), cp1251("Невозможно снять/установить автозапуск Менеджера!"));
    return false;
}

std::string journalCommandLine(const std::string& systemLogPath, const std::string& configDirectory)
{
    return std::string("vxJournal") + platform::executableSuffix + " \"" + systemLogPath + "\" \"" +
           configDirectory + "\" hide";
}

platform::ProcessStartInfo journalStartInfo(const AppState& state)
{
    platform::ProcessStartInfo info;
    info.commandLine = config::cp1251ToUtf8(journalCommandLine(state.liveMainConfig.systemLogPath, state.ConfigDirectory));
    info.workingDirectory = state.baseDirectory;
    info.searchFolder = state.baseDirectory;
    return info;
}

void journalStart(const platform::ProcessStartInfo& info, const MainCommandHooks& hooks)
{
    VX_LOG(maintenance::logInfo, "JournalStart");
    if (hooks.startProcess)
        hooks.startProcess(info);   // no wait; the handle closes at once and the result is ignored
}

void onJournalCommand(AppState& state, const MainCommandHooks& hooks)
{
    // The command line is made here, on the window's thread; the task only
    // starts the process.
    MainCommandHooks starter;
    starter.startProcess = hooks.startProcess;
    auto task = [info = journalStartInfo(state), starter] { journalStart(info, starter); };
    if (hooks.runDetached)
        hooks.runDetached(task);
    else
        task();
    state.status.set(cp1251("Отправлена команда для запуска Журнала!"));
}

} // namespace vx::core
