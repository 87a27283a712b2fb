#include "core/global_commands.h"

#include "config/text_codec.h"

namespace vx::core {

std::future<void> launchAsync(std::function<void()> task)
{
    return std::async(std::launch::async, std::move(task));
}

namespace {

void launchTask(AppState& state, const ProcessActions& actions, std::function<void()> task)
{
    auto launch = actions.launch ? actions.launch : launchAsync;
    state.pendingTasks.add(launch(std::move(task)));
}

void requestService(AppState& state, const ProcessActions& actions,
                    const ProcessActions::ServiceRequest& request, bool restart)
{
    if (!request)
        return;
    launchTask(state, actions, [request, restart] { request("/StopServer", restart); });
}

} // namespace

void startAll(AppState& state, const ProcessActions& actions)
{
    requestService(state, actions, actions.threadRequestsToDirect, true);
    requestService(state, actions, actions.threadRequests, true);
    if (actions.messengerOn && actions.messengerOn())
        requestService(state, actions, actions.threadRequestsToMes, true);
    state.liveMainConfig.startStatus = true;
    if (actions.saveMainConfig)
        actions.saveMainConfig();
    state.status.set(config::utf8ToCp1251("Запущено всё!"));
    const std::vector<bool> planned = state.streams.tablePlanned();
    for (size_t i = 0; i < planned.size(); ++i) {
        if (planned[i] && actions.videoStart) {
            const int index = static_cast<int>(i);
            auto start = actions.videoStart;
            launchTask(state, actions, [start, index] { start(index); });
        }
    }
}

void stopAll(AppState& state, const ProcessActions& actions)
{
    requestService(state, actions, actions.threadRequestsToDirect, false);
    requestService(state, actions, actions.threadRequests, false);
    // Unlike the start, the stop doesn't ask whether the messenger is on.
    requestService(state, actions, actions.threadRequestsToMes, false);
    const int count = state.streams.size();
    for (int i = 0; i < count; ++i) {
        if (actions.videoStop) {
            auto stop = actions.videoStop;
            launchTask(state, actions, [stop, i] { stop(i); });
        }
    }
    state.liveMainConfig.startStatus = false;
    if (actions.saveMainConfig)
        actions.saveMainConfig();
    state.status.set(config::utf8ToCp1251("Остановлено всё!"));
}

} // namespace vx::core
