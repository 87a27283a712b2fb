#pragma once
#include <string>

namespace vx::core {
// The program's version: four decimal numbers joined with full stops.
std::string versionText();
}
