#pragma once
// The main dialog's eight buttons: the dialog procedure hands each press
// here with its control id; what opens or shows comes in through the hooks.
#include <functional>

#include "core/main_commands.h"
#include "core/process_actions.h"
#include "core/settings_commands.h"
#include "state/app_state.h"

namespace vx::core {

enum MainDialogCommand : int {
    dialogStartAll = 1036,
    dialogStopAll = 1037,
    dialogMessengers = 1038,
    dialogRecognition = 1039,
    dialogJournal = 1042,
    dialogControl = 1044,
    dialogLists = 1045,
    dialogWatch = 1087,
};

struct DialogCommandHooks {
    MainCommandHooks commands;           // the journal's start
    SettingsHooks settings;              // the settings dialogs
    std::function<void()> openWhiteLists;   // the white list manager
};

// The dialog procedure's WM_COMMAND: ids 1036 to 1087; any other id does
// nothing.
void runDialogCommand(AppState& state, ProcessActions& actions, int id, const DialogCommandHooks& hooks);

} // namespace vx::core
