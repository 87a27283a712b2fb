#include "ui/qt/edit_hooks.h"

#include "core/edit_wiring.h"
#include "ui/qt/recognition_window.h"
#include "ui/qt/signals_reports_window.h"
#include "ui/qt/stream_window.h"

namespace vx::ui {

core::EditHooks windowEditHooks(QWidget* window, core::AppState& state, dialogs::Messages& messages,
                                const std::shared_ptr<supervision::ServiceContext>& services,
                                std::function<void()> redraw)
{
    core::EditHooks hooks = core::systemEditHooks(state, supervision::makeStreamControl(state), services);
    core::AppState* s = &state;
    hooks.streamDialog = [window, s] { return runStreamDialog(window, *s); };
    hooks.recognitionDialog = [window, s] { return runRecognitionDialog(window, *s); };
    hooks.signalsDialog = [window, s] { return runSignalsReportsDialog(window, *s); };
    hooks.messages = &messages;
    hooks.redraw = std::move(redraw);
    return hooks;
}

} // namespace vx::ui
