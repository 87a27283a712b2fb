#include "platform/program_arguments.h"

#include "platform/win32/wide_text.h"

#include <windows.h>
#include <shellapi.h>

namespace vx::platform {

std::vector<std::string> programArguments(int argc, char** argv)
{
    int count = 0;
    wchar_t** words = ::CommandLineToArgvW(::GetCommandLineW(), &count);
    if (!words)
        return std::vector<std::string>(argv, argv + argc);
    std::vector<std::string> arguments;
    for (int i = 0; i < count; ++i)
        arguments.push_back(win32::narrow(words[i]));
    ::LocalFree(words);
    return arguments;
}

} // namespace vx::platform
