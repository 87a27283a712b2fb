// Text files on Windows end their lines in carriage return and line feed, as
// the C runtime's text mode writes them.
#include "platform/text_mode.h"

namespace vx::platform {

const char* const textLineEnd = "\r\n";

} // namespace vx::platform
