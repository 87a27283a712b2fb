#pragma once
// Notes on what the tool does, on standard error when VX_ONVIF_TRACE is
// set. Silent otherwise: the manager reads standard error and standard
// output from one pipe, and only the JSON text may reach it.
#include <string>

namespace onvif {

void trace(const std::string& text);

} // namespace onvif
