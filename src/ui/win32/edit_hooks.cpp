#include "ui/win32/edit_hooks.h"

#include "core/edit_wiring.h"
#include "ui/win32/recognition_window.h"
#include "ui/win32/signals_reports_window.h"
#include "ui/win32/stream_window.h"

namespace vx::ui::win32 {

core::EditHooks windowEditHooks(HWND owner, core::AppState& state, dialogs::Messages& messages,
                                const std::shared_ptr<supervision::ServiceContext>& services,
                                std::function<void()> redraw)
{
    core::EditHooks hooks = core::systemEditHooks(state, supervision::makeStreamControl(state), services);
    core::AppState* s = &state;
    hooks.streamDialog = [owner, s] { return runStreamDialog(owner, *s); };
    hooks.recognitionDialog = [owner, s] { return runRecognitionDialog(owner, *s); };
    hooks.signalsDialog = [owner, s] { return runSignalsReportsDialog(owner, *s); };
    hooks.messages = &messages;
    hooks.redraw = std::move(redraw);
    return hooks;
}

} // namespace vx::ui::win32
