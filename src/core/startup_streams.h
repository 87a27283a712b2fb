#pragma once
// The create handler's steps that fill the manager from the stream files and
// the service configs: every stream of the main config into the table, the
// recognition config, the receiver samples, the white lists and the
// messenger config, with the copies the dialogs edit.
#include <string>

#include "core/startup.h"
#include "state/app_state.h"

namespace vx::core {

// Each name of videoStreams, in file order, through loadCamera into the
// working record and from there into the stream table under the file's ID.
// A file that can't be read is logged and skipped; a table that refuses the
// stream puts "Ошибка в загрузке настроек видеопотока <file>" on the status
// bar. A stream whose autoRun is false toggles the planned flag of the
// record at the running position p, which counts every name, failed ones
// too: after a failed name p points at another stream. That is how the
// manager has always behaved and it is kept.
void loadStreams(AppState& state);

// loadRecogGlobal with its log line, and on failure the recognition config
// message under "Сообщение"; start-up goes on with what was read. The
// record is then copied for the recognition service dialog.
void loadRecognitionConfigStep(AppState& state, const StartupHooks& hooks);

// The receiver samples (their reader empties the white lists first, which
// has no effect here: the lists come after).
void loadReceiverSamplesStep(AppState& state);

// loadMessengers (an old file takes the control service's port), then the
// copy for the messenger dialogs.
void loadMessengersStep(AppState& state);

} // namespace vx::core
