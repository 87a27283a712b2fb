#include "support/environment.h"

#include <cstdlib>

namespace vx::test {

// _putenv_s keeps the C runtime's copy and the process block in step, so both
// getenv and the children started with CreateProcessW see the value.
void setEnvironment(const std::string& name, const std::string& value)
{
    ::_putenv_s(name.c_str(), value.c_str());
}

void unsetEnvironment(const std::string& name)
{
    ::_putenv_s(name.c_str(), "");
}

} // namespace vx::test
