#include "core/entry_steps.h"

#include <mutex>

#include "core/startup.h"
#include "core/version.h"
#include "maintenance/crash_capture.h"
#include "maintenance/system_log.h"
#include "platform/paths.h"
#include "platform/single_instance.h"
#include "platform/user_data.h"

namespace vx::core {

bool enterProcess(AppState& state, std::unique_ptr<platform::NamedLock>& instanceLock)
{
    if (!platform::acquireSingleInstance("VexlaneOnce", instanceLock)) {
        platform::raiseExistingInstance("Vexlane");
        return false;
    }
    state.baseDirectory = platform::folderOf(platform::executablePath());
    platform::setCurrentDirectory(state.baseDirectory);
    maintenance::installCrashCapture(state.baseDirectory, narrowPath(state.baseDirectory));
    state.versionText = versionText();
    // Started from another folder than last time: the create handler offers
    // the earlier installation's settings.
    checkSettingsMigrationStep(state, platform::userDataDirectory());
    return true;
}

void leaveProcess(AppState& state)
{
    maintenance::closeLogs();
    std::lock_guard<std::mutex> lock(state.videoQuotaMutex);
    state.videoQuota.reset();
}

} // namespace vx::core
