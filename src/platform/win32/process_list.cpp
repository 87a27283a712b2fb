// The process list from a Toolhelp32 snapshot; the full path of each image
// where the system lets us ask for it.
#include "platform/process.h"

#include "platform/win32/wide_text.h"

#include <windows.h>
#include <tlhelp32.h>

#include <cctype>

namespace vx::platform {

bool sameImageName(const std::string& a, const std::string& b)
{
    if (a.size() != b.size())
        return false;
    for (std::size_t i = 0; i < a.size(); ++i)
        if (std::tolower(static_cast<unsigned char>(a[i])) != std::tolower(static_cast<unsigned char>(b[i])))
            return false;
    return true;
}

namespace {

std::filesystem::path imagePath(DWORD pid)
{
    HANDLE process = ::OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, pid);
    if (!process)
        return {};
    wchar_t buffer[32768];
    DWORD size = sizeof buffer / sizeof buffer[0];
    std::filesystem::path path;
    if (::QueryFullProcessImageNameW(process, 0, buffer, &size))
        path = std::wstring(buffer, size);
    ::CloseHandle(process);
    return path;
}

} // namespace

std::vector<ProcessEntry> listProcesses()
{
    std::vector<ProcessEntry> entries;
    HANDLE snapshot = ::CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0);
    if (snapshot == INVALID_HANDLE_VALUE)
        return entries;
    PROCESSENTRY32W entry{};
    entry.dwSize = sizeof entry;
    for (BOOL more = ::Process32FirstW(snapshot, &entry); more; more = ::Process32NextW(snapshot, &entry)) {
        ProcessEntry e;
        e.pid = static_cast<long>(entry.th32ProcessID);
        e.imageName = win32::narrow(entry.szExeFile);
        e.executable = imagePath(entry.th32ProcessID);
        entries.push_back(std::move(e));
    }
    ::CloseHandle(snapshot);
    return entries;
}

long findProcessByName(const std::string& imageName)
{
    for (const ProcessEntry& entry : listProcesses())
        if (sameImageName(entry.imageName, imageName))
            return entry.pid;
    return 0;
}

} // namespace vx::platform
