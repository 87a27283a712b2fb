#pragma once
// Setting and clearing one environment variable of the test process (and of
// the processes it starts afterwards).
#include <string>

namespace vx::test {

void setEnvironment(const std::string& name, const std::string& value);
void unsetEnvironment(const std::string& name);

} // namespace vx::test
