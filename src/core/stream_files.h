#pragma once
// A stream's file vx_stream<id>.json as the edit flow reads and writes it:
// the reader and the writer work on the process-wide staging copy
// (workingCamera), never on the table directly.
#include <cstdint>
#include <string>

#include "state/app_state.h"

namespace vx::core {

// loadCamera of vx_stream<id>.json into workingCamera, without touching the
// table; true when the file could be read.
bool loadStreamFile(AppState& state, std::int32_t id);

// The table's three sections of `index` go to workingCamera and are written
// to the stream's file with the services' ports in force; then the main
// config is written with the table's identifiers and planned flags. An index
// outside the table writes nothing. False when a file was not saved (logged
// at ERROR); `unsavedFile` then gets the name of the first one.
bool writeStreamFile(AppState& state, std::int32_t index, std::string* unsavedFile = nullptr);

// writeStreamFile for every stream of the table, in table order (after a
// service port changed, so that every stream file carries the new ports).
void rewriteAllStreams(AppState& state);

} // namespace vx::core
