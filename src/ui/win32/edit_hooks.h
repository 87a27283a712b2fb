#pragma once
// The edit flow's hooks as the main window binds them: the stream control,
// the control service and, over `owner`, the three stream dialogs and the
// message boxes.
#include <windows.h>

#include <functional>
#include <memory>

#include "core/apply_edits.h"
#include "supervision/service_context.h"

namespace vx::ui::win32 {

core::EditHooks windowEditHooks(HWND owner, core::AppState& state, dialogs::Messages& messages,
                                const std::shared_ptr<supervision::ServiceContext>& services,
                                std::function<void()> redraw);

} // namespace vx::ui::win32
