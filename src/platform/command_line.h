#pragma once
// A command line taken apart the way the first platform's programs take their
// own apart (CommandLineToArgvW), so a command line means the same list of
// arguments on every platform:
//  - the program name runs to the first blank or tab, or, when it begins with
//    a quote, to the next quote; backslashes in it are plain characters;
//  - in the arguments, blanks and tabs outside quotes separate; 2n
//    backslashes before a quote give n backslashes and the quote opens or
//    closes a quoted part; 2n+1 backslashes before a quote give n backslashes
//    and a literal quote; backslashes not before a quote are plain;
//  - inside a quoted part, a doubled quote gives one literal quote;
//  - "" stands for an empty argument; trailing blanks add no argument.
// An empty or blank command line gives an empty list (the first platform
// would answer with the running program's path there).
#include <string>
#include <vector>

namespace vx::platform {

std::vector<std::string> splitCommandLine(const std::string& commandLine);

} // namespace vx::platform
