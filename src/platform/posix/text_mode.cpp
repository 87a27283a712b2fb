// Text files on Linux end their lines in a bare line feed.
#include "platform/text_mode.h"

namespace vx::platform {

const char* const textLineEnd = "\n";

} // namespace vx::platform
