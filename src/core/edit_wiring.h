#pragma once
// Binds the edit flow to the stream control, the command channel and the
// control service's worker. The window adds its dialogs, its message boxes
// and its drawing.
#include <memory>

#include "core/apply_edits.h"
#include "supervision/service_context.h"
#include "supervision/stream_control.h"

namespace vx::core {

EditHooks systemEditHooks(AppState& state, const std::shared_ptr<supervision::StreamControl>& streams,
                          const std::shared_ptr<supervision::ServiceContext>& services);

} // namespace vx::core
