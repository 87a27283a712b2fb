// Windows has no SIGPIPE; its standard output would turn LF into CR LF.
#include "process_setup.h"

#include <fcntl.h>
#include <io.h>

#include <cstdio>

namespace onvif {

void prepareProcess() { _setmode(_fileno(stdout), _O_BINARY); }

} // namespace onvif
