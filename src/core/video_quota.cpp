#include "core/video_quota.h"

#include "config/config_file.h"
#include "supervision/service_watch.h"

namespace vx::core {

void createVideoQuota(AppState& state)
{
    const config::MainConfig& c = state.liveMainConfig;
    // The scan runs under the lock too: a pass in flight would otherwise
    // delete files the new index has just counted.
    std::lock_guard<std::mutex> lock(state.videoQuotaMutex);
    state.videoQuota.reset();
    state.videoQuota = std::make_unique<maintenance::VideoArchive>(config::toNativePath(c.videoPath),
                                                                   c.maxSizeVideoDirectoryMb);
}

void runVideoQuota(AppState& state)
{
    std::lock_guard<std::mutex> lock(state.videoQuotaMutex);
    if (state.videoQuota)
        state.videoQuota->enforceQuota();
}

void connectQuotaHook(TimerHooks& hooks, AppState& state)
{
    AppState* s = &state;
    hooks.quotaTask = [s] { supervision::spawnRequest([s] { runVideoQuota(*s); }); };
}

} // namespace vx::core
