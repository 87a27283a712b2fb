#include "core/settings_commands.h"

namespace vx::core {

void editWhiteLists(AppState& state, const std::function<void()>& openManager)
{
    if (openManager)
        openManager();
    state.status.set(std::string());
}

} // namespace vx::core
