#include "core/dialog_commands.h"

#include "core/global_commands.h"

namespace vx::core {

void runDialogCommand(AppState& state, ProcessActions& actions, int id, const DialogCommandHooks& hooks)
{
    switch (id) {
    case dialogStartAll:
        startAll(state, actions);
        break;
    case dialogStopAll:
        stopAll(state, actions);
        break;
    case dialogLists:
        editWhiteLists(state, hooks.openWhiteLists);
        break;
    case dialogJournal:
        onJournalCommand(state, hooks.commands);
        break;
    case dialogRecognition:
        editRecognitionService(state, actions, hooks.settings);
        break;
    case dialogWatch:
        editProcessControl(state, actions, hooks.settings);
        break;
    case dialogControl:
        editControlService(state, actions, hooks.settings);
        break;
    case dialogMessengers:
        editMessengers(state, actions, hooks.settings);
        break;
    default:
        break;
    }
}

} // namespace vx::core
