#pragma once
// The command line of another process, as one text that splitCommandLine
// (command_line.h) takes apart again into the process's own arguments.
//
// POSIX keeps a process's arguments as a list (/proc/<pid>/cmdline), not as
// one line; the list is taken as it stands there and joined by the quoting
// rules of command_line.h, so that splitting the text gives that list back.
// The first platform reads the line from the process itself.
#include <string>
#include <vector>

namespace vx::platform {

// Empty when the process is gone or its command line can't be read.
std::string readProcessCommandLine(long pid);

// The inverse of splitCommandLine: each argument quoted where it must be,
// backslashes before a quote doubled, quotes escaped. The program name is
// only put in quotes when it holds a blank or a tab (it can't hold a quote).
std::string joinCommandLine(const std::vector<std::string>& arguments);

} // namespace vx::platform
