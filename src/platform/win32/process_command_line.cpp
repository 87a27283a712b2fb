// The command line of another process, read from its process environment
// block: the basic information gives the block's address, the block points to
// the process parameters, and those hold the command line as a counted wide
// string. The offsets are those of 64-bit processes. Any failure on the way
// gives an empty text.
#include "platform/process_command_line.h"

#include "platform/win32/wide_text.h"

#include <windows.h>

#include <cstring>

namespace vx::platform {

namespace {

using QueryInformation = LONG(WINAPI*)(HANDLE, int, void*, ULONG, ULONG*);

bool readBytes(HANDLE process, std::uint64_t address, void* out, std::size_t size)
{
    SIZE_T got = 0;
    return ::ReadProcessMemory(process, reinterpret_cast<const void*>(address), out, size, &got) && got == size;
}

std::string commandLineOf(HANDLE process)
{
    const HMODULE ntdll = ::GetModuleHandleW(L"ntdll.dll");
    const auto query = ntdll ? reinterpret_cast<QueryInformation>(
                                   reinterpret_cast<void*>(::GetProcAddress(ntdll, "NtQueryInformationProcess")))
                             : nullptr;
    if (!query)
        return {};
    unsigned char basic[48] = {};
    ULONG length = 0;
    if (query(process, 0, basic, sizeof basic, &length) < 0)
        return {};
    std::uint64_t block = 0;
    std::memcpy(&block, basic + 8, sizeof block);
    if (block == 0)
        return {};
    unsigned char environment[712];
    if (!readBytes(process, block, environment, sizeof environment))
        return {};
    std::uint64_t parametersAddress = 0;
    std::memcpy(&parametersAddress, environment + 32, sizeof parametersAddress);
    unsigned char parameters[128];
    if (parametersAddress == 0 || !readBytes(process, parametersAddress, parameters, sizeof parameters))
        return {};
    std::uint16_t bytes = 0;
    std::uint64_t textAddress = 0;
    std::memcpy(&bytes, parameters + 112, sizeof bytes);
    std::memcpy(&textAddress, parameters + 120, sizeof textAddress);
    if (bytes == 0 || textAddress == 0)
        return {};
    std::wstring text(bytes / sizeof(wchar_t), L'\0');
    if (!readBytes(process, textAddress, text.data(), text.size() * sizeof(wchar_t)))
        return {};
    text.resize(std::wcslen(text.c_str()));
    return win32::narrow(text);
}

} // namespace

std::string readProcessCommandLine(long pid)
{
    if (pid <= 0)
        return {};
    HANDLE process = ::OpenProcess(PROCESS_QUERY_INFORMATION | PROCESS_VM_READ, FALSE, static_cast<DWORD>(pid));
    if (!process)
        return {};
    std::string line = commandLineOf(process);
    ::CloseHandle(process);
    return line;
}

} // namespace vx::platform
