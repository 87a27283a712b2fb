#include "support/child_process.h"
#include "support/time_scale.h"

#include <windows.h>

#include <chrono>
#include <thread>

#include "platform/process_command_line.h"
#include "platform/win32/wide_text.h"

namespace vx::test {
namespace {

using Clock = std::chrono::steady_clock;

HANDLE asHandle(long value)
{
    return reinterpret_cast<HANDLE>(static_cast<intptr_t>(value));
}

void closeHandle(long& value)
{
    if (value >= 0)
        ::CloseHandle(asHandle(value));
    value = -1;
}

} // namespace

// Handles are kept in the integer fields the POSIX build keeps its
// descriptors in; -1 is "none" in both.
std::unique_ptr<ChildProcess> ChildProcess::start(const std::filesystem::path& program,
                                                  const std::vector<std::string>& arguments)
{
    SECURITY_ATTRIBUTES inheritable{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
    HANDLE inputRead = nullptr, inputWrite = nullptr, outputRead = nullptr, outputWrite = nullptr;
    if (!::CreatePipe(&inputRead, &inputWrite, &inheritable, 0))
        return nullptr;
    if (!::CreatePipe(&outputRead, &outputWrite, &inheritable, 0)) {
        ::CloseHandle(inputRead);
        ::CloseHandle(inputWrite);
        return nullptr;
    }
    // Only the child's ends are inherited.
    ::SetHandleInformation(inputWrite, HANDLE_FLAG_INHERIT, 0);
    ::SetHandleInformation(outputRead, HANDLE_FLAG_INHERIT, 0);

    const std::u8string programText = program.u8string();
    std::vector<std::string> words{std::string(programText.begin(), programText.end())};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::wstring commandLine = platform::win32::widen(platform::joinCommandLine(words));

    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdInput = inputRead;
    startup.hStdOutput = outputWrite;
    startup.hStdError = ::GetStdHandle(STD_ERROR_HANDLE);
    PROCESS_INFORMATION info{};
    const BOOL started = ::CreateProcessW(program.c_str(), commandLine.data(), nullptr, nullptr, TRUE, 0, nullptr,
                                          nullptr, &startup, &info);
    ::CloseHandle(inputRead);
    ::CloseHandle(outputWrite);
    if (!started) {
        ::CloseHandle(inputWrite);
        ::CloseHandle(outputRead);
        return nullptr;
    }
    ::CloseHandle(info.hThread);
    std::unique_ptr<ChildProcess> child(new ChildProcess);
    child->pid_ = static_cast<long>(info.dwProcessId);
    child->process_ = static_cast<long>(reinterpret_cast<intptr_t>(info.hProcess));
    child->input_ = static_cast<long>(reinterpret_cast<intptr_t>(inputWrite));
    child->output_ = static_cast<long>(reinterpret_cast<intptr_t>(outputRead));
    return child;
}

ChildProcess::~ChildProcess()
{
    closeInput();
    if (!reaped_) {
        kill(9);
        waitExit(5000);
    }
    closeHandle(output_);
    closeHandle(process_);
}

std::optional<std::string> ChildProcess::readLine(int timeoutMs)
{
    const auto deadline = Clock::now() + std::chrono::milliseconds(scaledMs(timeoutMs));
    for (;;) {
        const auto end = pending_.find('\n');
        if (end != std::string::npos) {
            std::string line = pending_.substr(0, end);
            pending_.erase(0, end + 1);
            if (!line.empty() && line.back() == '\r')
                line.pop_back();
            return line;
        }
        DWORD available = 0;
        if (!::PeekNamedPipe(asHandle(output_), nullptr, 0, nullptr, &available, nullptr))
            return std::nullopt;   // the output ended
        if (available == 0) {
            if (Clock::now() >= deadline)
                return std::nullopt;
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
            continue;
        }
        char buffer[256];
        DWORD got = 0;
        if (!::ReadFile(asHandle(output_), buffer, std::min<DWORD>(available, sizeof buffer), &got, nullptr) ||
            got == 0)
            return std::nullopt;
        pending_.append(buffer, got);
    }
}

bool ChildProcess::writeLine(const std::string& line)
{
    if (input_ < 0)
        return false;
    const std::string text = line + "\n";
    DWORD written = 0;
    return ::WriteFile(asHandle(input_), text.data(), static_cast<DWORD>(text.size()), &written, nullptr) &&
           written == text.size();
}

void ChildProcess::closeInput()
{
    closeHandle(input_);
}

// Windows has no signals to send: the child is terminated with 128 + the
// number as its exit code, so waitExit reads the same as on Linux.
void ChildProcess::kill(int signal)
{
    if (!reaped_ && process_ >= 0)
        ::TerminateProcess(asHandle(process_), static_cast<UINT>(128 + signal));
}

std::optional<int> ChildProcess::waitExit(int timeoutMs)
{
    if (reaped_)
        return exitStatus_;
    if (process_ < 0)
        return std::nullopt;
    if (::WaitForSingleObject(asHandle(process_), static_cast<DWORD>(scaledMs(timeoutMs))) != WAIT_OBJECT_0)
        return std::nullopt;
    DWORD code = 0;
    ::GetExitCodeProcess(asHandle(process_), &code);
    reaped_ = true;
    exitStatus_ = static_cast<int>(code & 0xff);
    return exitStatus_;
}

std::filesystem::path testProgramPath(const std::string& name)
{
    wchar_t buffer[MAX_PATH * 4];
    const DWORD n = ::GetModuleFileNameW(nullptr, buffer, static_cast<DWORD>(std::size(buffer)));
    std::filesystem::path self(std::wstring(buffer, n));
    std::filesystem::path program = self.parent_path() / name;
    if (program.extension() != ".exe")
        program += ".exe";
    return program;
}

} // namespace vx::test
