#include "process_setup.h"

#include <csignal>

namespace onvif {

void prepareProcess() { std::signal(SIGPIPE, SIG_IGN); }

} // namespace onvif
