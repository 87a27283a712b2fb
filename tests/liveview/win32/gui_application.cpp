#include "liveview/live_fixture.h"

namespace vx::test {

// GDI draws text without an application object.
void ensureGuiApplication() {}

} // namespace vx::test
