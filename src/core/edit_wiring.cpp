#include "core/edit_wiring.h"

#include "core/process_actions.h"
#include "supervision/service_requests.h"
#include "supervision/service_watch.h"
#include "supervision/stream_channel.h"

namespace vx::core {

EditHooks systemEditHooks(AppState& state, const std::shared_ptr<supervision::StreamControl>& streams,
                          const std::shared_ptr<supervision::ServiceContext>& services)
{
    EditHooks hooks;
    hooks.videoStart = [streams](int index) { supervision::videoStart(*streams, index, -1); };
    hooks.videoStop = [streams](int index) { supervision::videoStop(*streams, index); };
    hooks.videoRestart = [streams](int index) { supervision::videoRestart(*streams, index); };
    StreamTable* table = &state.streams;
    hooks.sendHideCommand = [table](int kind, int show, int index) {
        supervision::sendHideCommand(*table, kind, show, index);
    };
    hooks.requestControl = [services](const std::string& path, bool restart, std::int32_t value, std::int32_t open) {
        supervision::threadRequestsToDirect(*services, path, restart, value, open);
    };
    hooks.launch = launchAsync;
    hooks.spawn = [](std::function<void()> task) { supervision::spawnRequest(std::move(task)); };
    return hooks;
}

} // namespace vx::core
