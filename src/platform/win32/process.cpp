// Starting a process with CreateProcessW. The command line goes to the
// system as it stands; the executable (its first word) is looked for in the
// search folder first and, when found there, named to the system by its full
// path, else the system's own search (its folders, then PATH) applies.
#include "platform/process.h"

#include "platform/command_line.h"
#include "platform/win32/wide_text.h"

#include <windows.h>

#include <algorithm>
#include <vector>

namespace vx::platform {

namespace {

class ProcessHandle : public StartedProcess {
public:
    ProcessHandle(HANDLE process, long pid, HANDLE output) : process_(process), pid_(pid), output_(output) {}
    ~ProcessHandle() override
    {
        ::CloseHandle(process_);
        if (output_)
            ::CloseHandle(output_);
    }
    long pid() const override { return pid_; }
    bool waitForExit(int timeoutMs) override
    {
        if (::WaitForSingleObject(process_, timeoutMs < 0 ? INFINITE : static_cast<DWORD>(timeoutMs)) !=
            WAIT_OBJECT_0)
            return false;
        DWORD code = 0;
        ::GetExitCodeProcess(process_, &code);
        exitCode_ = static_cast<int>(code);
        return true;
    }
    int exitCode() const override { return exitCode_; }
    long readOutput(char* buffer, std::size_t size) override
    {
        if (!output_)
            return -1;
        DWORD got = 0;
        if (::ReadFile(output_, buffer, static_cast<DWORD>(size), &got, nullptr))
            return static_cast<long>(got);
        return ::GetLastError() == ERROR_BROKEN_PIPE ? 0 : -1;
    }
private:
    HANDLE process_;
    long pid_;
    HANDLE output_;
    int exitCode_ = -1;
};

std::filesystem::path inSearchFolder(const ProcessStartInfo& info)
{
    const auto words = splitCommandLine(info.commandLine);
    if (words.empty() || info.searchFolder.empty())
        return {};
    const std::wstring program = win32::widen(words[0]);
    if (program.find_first_of(L"\\/:") != std::wstring::npos)
        return {};
    for (const std::wstring& name : {program, program + L".exe"}) {
        const auto candidate = info.searchFolder / name;
        const DWORD attributes = ::GetFileAttributesW(candidate.c_str());
        if (attributes != INVALID_FILE_ATTRIBUTES && !(attributes & FILE_ATTRIBUTE_DIRECTORY))
            return candidate;
    }
    return {};
}

} // namespace

std::unique_ptr<StartedProcess> startProcess(const ProcessStartInfo& info)
{
    const std::filesystem::path application = inSearchFolder(info);
    std::wstring commandLine = win32::widen(info.commandLine);
    STARTUPINFOEXW startup{};
    startup.StartupInfo.cb = sizeof startup.StartupInfo;
    HANDLE readEnd = nullptr;
    HANDLE writeEnd = nullptr;
    // What a child inherits is named: the capture pipe, or our standard
    // handles. The files the manager itself has open (its log above all)
    // stay with it, so that no service keeps them open and they can be
    // renamed and archived while it runs.
    std::vector<HANDLE> inherited;
    if (info.captureOutput) {
        SECURITY_ATTRIBUTES attributes{sizeof attributes, nullptr, TRUE};
        if (!::CreatePipe(&readEnd, &writeEnd, &attributes, 0))
            return nullptr;
        ::SetHandleInformation(readEnd, HANDLE_FLAG_INHERIT, 0);
        startup.StartupInfo.dwFlags = STARTF_USESTDHANDLES;
        startup.StartupInfo.hStdInput = nullptr;
        startup.StartupInfo.hStdOutput = writeEnd;
        startup.StartupInfo.hStdError = writeEnd;
        inherited.push_back(writeEnd);
    } else if (info.inheritHandles) {
        for (DWORD which : {STD_INPUT_HANDLE, STD_OUTPUT_HANDLE, STD_ERROR_HANDLE}) {
            HANDLE handle = ::GetStdHandle(which);
            DWORD flags = 0;
            if (handle && handle != INVALID_HANDLE_VALUE && ::GetHandleInformation(handle, &flags) &&
                (flags & HANDLE_FLAG_INHERIT) &&
                std::find(inherited.begin(), inherited.end(), handle) == inherited.end())
                inherited.push_back(handle);
        }
    }
    std::vector<char> attributeSpace;
    DWORD flags = info.noConsole ? CREATE_NO_WINDOW : 0;
    if (!inherited.empty()) {
        SIZE_T size = 0;
        ::InitializeProcThreadAttributeList(nullptr, 1, 0, &size);
        attributeSpace.resize(size);
        auto* list = reinterpret_cast<LPPROC_THREAD_ATTRIBUTE_LIST>(attributeSpace.data());
        if (::InitializeProcThreadAttributeList(list, 1, 0, &size) &&
            ::UpdateProcThreadAttribute(list, 0, PROC_THREAD_ATTRIBUTE_HANDLE_LIST, inherited.data(),
                                        inherited.size() * sizeof(HANDLE), nullptr, nullptr)) {
            startup.lpAttributeList = list;
            flags |= EXTENDED_STARTUPINFO_PRESENT;
        }
    }
    PROCESS_INFORMATION process{};
    const BOOL started = ::CreateProcessW(application.empty() ? nullptr : application.c_str(), commandLine.data(),
                                          nullptr, nullptr, inherited.empty() ? FALSE : TRUE, flags, nullptr,
                                          info.workingDirectory.empty() ? nullptr : info.workingDirectory.c_str(),
                                          &startup.StartupInfo, &process);
    if (startup.lpAttributeList)
        ::DeleteProcThreadAttributeList(startup.lpAttributeList);
    if (writeEnd)
        ::CloseHandle(writeEnd);
    if (!started) {
        if (readEnd)
            ::CloseHandle(readEnd);
        return nullptr;
    }
    ::CloseHandle(process.hThread);
    return std::make_unique<ProcessHandle>(process.hProcess, static_cast<long>(process.dwProcessId), readEnd);
}

bool terminateProcess(long pid)
{
    HANDLE process = ::OpenProcess(PROCESS_TERMINATE, FALSE, static_cast<DWORD>(pid));
    if (!process)
        return false;
    const bool ended = ::TerminateProcess(process, 0) != 0;
    ::CloseHandle(process);
    return ended;
}

} // namespace vx::platform
