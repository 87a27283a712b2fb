#pragma once
// The program's own arguments as UTF-8 texts, the program name first. Windows
// hands main its arguments in the ANSI code page, where a Cyrillic folder
// name is lost; there they are read again from the wide command line.
#include <string>
#include <vector>

namespace vx::platform {

std::vector<std::string> programArguments(int argc, char** argv);

} // namespace vx::platform
