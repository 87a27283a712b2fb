// Crash capture on Windows: the process's unhandled exception filter and the
// C runtime's signals lead to the installed handler; the dump is a minidump
// written with MiniDumpWriteDump, with the exception record when the crash
// came through the filter. Nothing here allocates once a crash has begun.
#include "platform/crash_report.h"

#include <windows.h>
#include <dbghelp.h>

#include <csignal>
#include <cstring>

namespace vx::platform {

namespace {

FatalSignalHandler installedHandler = nullptr;
EXCEPTION_POINTERS* crashPointers = nullptr;
DWORD crashThread = 0;
volatile LONG crashingThread = 0;
HANDLE dumpFile = INVALID_HANDLE_VALUE;
wchar_t textFile[4096];

int signalOf(DWORD code)
{
    switch (code) {
    case EXCEPTION_FLT_DIVIDE_BY_ZERO:
    case EXCEPTION_FLT_INVALID_OPERATION:
    case EXCEPTION_FLT_OVERFLOW:
    case EXCEPTION_FLT_UNDERFLOW:
    case EXCEPTION_INT_DIVIDE_BY_ZERO:
    case EXCEPTION_INT_OVERFLOW:
        return SIGFPE;
    case EXCEPTION_ILLEGAL_INSTRUCTION:
    case EXCEPTION_PRIV_INSTRUCTION:
        return SIGILL;
    default:
        return SIGSEGV;
    }
}

LONG WINAPI onUnhandledException(EXCEPTION_POINTERS* pointers)
{
    CrashReason reason;
    if (pointers && pointers->ExceptionRecord) {
        const EXCEPTION_RECORD& record = *pointers->ExceptionRecord;
        reason.exception = true;
        reason.signal = signalOf(record.ExceptionCode);
        reason.code = static_cast<int>(record.ExceptionCode);
        if (record.ExceptionCode == EXCEPTION_ACCESS_VIOLATION && record.NumberParameters >= 2) {
            reason.hasAddress = true;
            reason.address = reinterpret_cast<const void*>(record.ExceptionInformation[1]);
        }
    } else {
        reason.signal = SIGSEGV;
    }
    crashPointers = pointers;
    crashThread = ::GetCurrentThreadId();
    if (installedHandler)
        installedHandler(reason.signal, reason);
    endProcessNow(1);
}

void onSignal(int signal)
{
    CrashReason reason;
    reason.signal = signal;
    if (installedHandler)
        installedHandler(signal, reason);
    endProcessNow(1);
}

void writeAll(HANDLE to, const char* data, std::size_t size)
{
    while (size > 0) {
        DWORD written = 0;
        if (!::WriteFile(to, data, static_cast<DWORD>(size), &written, nullptr) || written == 0)
            return;
        data += written;
        size -= written;
    }
}

void putDigits(char*& at, int value, int width)
{
    for (int i = width - 1; i >= 0; --i) {
        at[i] = static_cast<char>('0' + value % 10);
        value /= 10;
    }
    at += width;
}

} // namespace

void installFatalSignalHandlers(FatalSignalHandler handler)
{
    installedHandler = handler;
    ::SetUnhandledExceptionFilter(onUnhandledException);
    for (int signal : {SIGABRT, SIGSEGV, SIGFPE, SIGILL})
        std::signal(signal, onSignal);
    // Loaded now rather than inside a crash.
    ::LoadLibraryW(L"dbghelp.dll");
}

void setCrashTextFile(const std::filesystem::path& file)
{
    const std::wstring& text = file.native();
    const std::size_t n = std::min(text.size(), sizeof textFile / sizeof textFile[0] - 1);
    std::wmemcpy(textFile, text.c_str(), n);
    textFile[n] = L'\0';
}

void writeCrashText(const char* text)
{
    char line[4400];
    char* at = line;
    const bool toLog = textFile[0] != L'\0';
    HANDLE to = ::GetStdHandle(STD_ERROR_HANDLE);
    if (toLog) {
        to = ::CreateFileW(textFile, FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                           nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
        if (to == INVALID_HANDLE_VALUE)
            to = ::GetStdHandle(STD_ERROR_HANDLE);
        SYSTEMTIME now{};
        ::GetLocalTime(&now);
        *at++ = '[';
        putDigits(at, now.wYear, 4);
        *at++ = '-';
        putDigits(at, now.wMonth, 2);
        *at++ = '-';
        putDigits(at, now.wDay, 2);
        *at++ = ' ';
        putDigits(at, now.wHour, 2);
        *at++ = ':';
        putDigits(at, now.wMinute, 2);
        *at++ = ':';
        putDigits(at, now.wSecond, 2);
        *at++ = ']';
        *at++ = ' ';
    }
    for (; *text && at < line + sizeof line - 3; ++text)
        *at++ = *text;
    if (toLog)
        *at++ = '\r';
    *at++ = '\n';
    if (to && to != INVALID_HANDLE_VALUE)
        writeAll(to, line, static_cast<std::size_t>(at - line));
    if (toLog && to != ::GetStdHandle(STD_ERROR_HANDLE))
        ::CloseHandle(to);
}

bool claimCrash(int exitCode)
{
    const LONG self = static_cast<LONG>(::GetCurrentThreadId());
    const LONG previous = ::InterlockedCompareExchange(&crashingThread, self, 0);
    if (previous == 0)
        return true;
    if (previous == self)
        endProcessNow(exitCode);
    for (;;)
        ::Sleep(INFINITE);
}

int createCrashDump(const char* path)
{
    wchar_t widePath[4096];
    const int n = ::MultiByteToWideChar(CP_UTF8, 0, path, -1, widePath, 4096);
    if (n <= 0)
        return -1;
    dumpFile = ::CreateFileW(widePath, GENERIC_READ | GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                             FILE_ATTRIBUTE_NORMAL, nullptr);
    return dumpFile == INVALID_HANDLE_VALUE ? -1 : 0;
}

void writeCrashReport(int dump, const CrashReason&)
{
    if (dump < 0 || dumpFile == INVALID_HANDLE_VALUE)
        return;
    MINIDUMP_EXCEPTION_INFORMATION exception{};
    exception.ThreadId = ::GetCurrentThreadId();
    exception.ExceptionPointers = crashPointers;
    exception.ClientPointers = FALSE;
    const bool withException = crashPointers && crashThread == ::GetCurrentThreadId();
    const auto type = static_cast<MINIDUMP_TYPE>(0x1B25);
    if (!::MiniDumpWriteDump(::GetCurrentProcess(), ::GetCurrentProcessId(), dumpFile, type,
                             withException ? &exception : nullptr, nullptr, nullptr)) {
        char line[80] = "MiniDumpWriteDump failed. Error: ";
        char digits[24];
        std::strcat(line, formatDecimal(static_cast<long long>(::GetLastError()), digits));
        writeCrashText(line);
    }
    ::CloseHandle(dumpFile);
    dumpFile = INVALID_HANDLE_VALUE;
}

[[noreturn]] void endProcessNow(int code)
{
    ::TerminateProcess(::GetCurrentProcess(), static_cast<UINT>(code));
    for (;;)
        ::Sleep(INFINITE);
}

} // namespace vx::platform
