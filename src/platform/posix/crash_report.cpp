// The POSIX side of crash_report.h. Inside a handler only write, open, read,
// close, clock_gettime, the raw gettid call, backtrace_symbols_fd and _exit
// are used; backtrace itself is loaded at install time, because its first
// call loads the unwinder and allocates.
#include "platform/crash_report.h"

#include <execinfo.h>
#include <fcntl.h>
#include <signal.h>
#include <sys/syscall.h>
#include <time.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstring>
#include <ctime>

namespace vx::platform {

namespace {

FatalSignalHandler installedHandler = nullptr;
// Where the crash texts go, and whether that is the system log (which wants
// the time prefix and CR LF) or plain standard error.
std::atomic<int> textDescriptor{STDERR_FILENO};
std::atomic<bool> textToLog{false};
std::atomic<long> localOffsetSeconds{0};
std::atomic<long> crashingThread{0};

// A stack for the handler of the installing thread, so that an overflow of
// its own stack still reaches the handler.
alignas(16) char alternateStack[64 * 1024];

long currentThreadId()
{
    return static_cast<long>(::syscall(SYS_gettid));
}

void writeAll(int fd, const char* data, std::size_t size)
{
    while (size > 0) {
        const ssize_t n = ::write(fd, data, size);
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            return;
        data += n;
        size -= static_cast<std::size_t>(n);
    }
}

void writeText(int fd, const char* text)
{
    writeAll(fd, text, std::strlen(text));
}

// A bounded text builder on the stack; what doesn't fit is cut off.
struct Line {
    char data[4096];
    std::size_t size = 0;
    void put(char c)
    {
        if (size < sizeof data)
            data[size++] = c;
    }
    void put(const char* text)
    {
        for (; *text; ++text)
            put(*text);
    }
    void putDigits(long value, int width)
    {
        char digits[24];
        int n = 0;
        do {
            digits[n++] = static_cast<char>('0' + value % 10);
            value /= 10;
        } while (value > 0 || n < width);
        while (n > 0)
            put(digits[--n]);
    }
};

// Days since 1970-01-01 to a civil date (proleptic Gregorian).
void civilFromDays(long days, long& year, long& month, long& day)
{
    days += 719468;
    const long era = (days >= 0 ? days : days - 146096) / 146097;
    const long dayOfEra = days - era * 146097;
    const long yearOfEra = (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
    const long dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    const long mp = (5 * dayOfYear + 2) / 153;
    day = dayOfYear - (153 * mp + 2) / 5 + 1;
    month = mp < 10 ? mp + 3 : mp - 9;
    year = yearOfEra + era * 400 + (month <= 2 ? 1 : 0);
}

// "[%Y-%m-%d %H:%M:%S] " of the local time, as the log's standard-error path.
void putTimePrefix(Line& line)
{
    timespec now{};
    ::clock_gettime(CLOCK_REALTIME, &now);
    const long local = static_cast<long>(now.tv_sec) + localOffsetSeconds.load();
    long days = local / 86400;
    long seconds = local % 86400;
    if (seconds < 0) {
        seconds += 86400;
        --days;
    }
    long year, month, day;
    civilFromDays(days, year, month, day);
    line.put('[');
    line.putDigits(year, 4);
    line.put('-');
    line.putDigits(month, 2);
    line.put('-');
    line.putDigits(day, 2);
    line.put(' ');
    line.putDigits(seconds / 3600, 2);
    line.put(':');
    line.putDigits(seconds / 60 % 60, 2);
    line.put(':');
    line.putDigits(seconds % 60, 2);
    line.put("] ");
}

const char* signalName(int signal)
{
    switch (signal) {
    case SIGABRT: return "SIGABRT";
    case SIGSEGV: return "SIGSEGV";
    case SIGFPE: return "SIGFPE";
    case SIGILL: return "SIGILL";
    case SIGBUS: return "SIGBUS";
    default: return "signal";
    }
}

void onFatalSignal(int signal, siginfo_t* info, void*)
{
    CrashReason reason;
    reason.signal = signal;
    if (info) {
        reason.code = info->si_code;
        // A signal sent by kill, raise or abort has no faulting address.
        if (info->si_code > 0 && signal != SIGABRT) {
            reason.hasAddress = true;
            reason.address = info->si_addr;
        }
    }
    if (installedHandler)
        installedHandler(signal, reason);
    endProcessNow(1);
}

void copyFile(const char* path, int to)
{
    const int from = ::open(path, O_RDONLY | O_CLOEXEC);
    if (from < 0) {
        writeText(to, "(not readable)\n");
        return;
    }
    char buffer[4096];
    for (;;) {
        const ssize_t n = ::read(from, buffer, sizeof buffer);
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            break;
        writeAll(to, buffer, static_cast<std::size_t>(n));
    }
    ::close(from);
}

} // namespace

void installFatalSignalHandlers(FatalSignalHandler handler)
{
    installedHandler = handler;
    void* frames[2];
    ::backtrace(frames, 2);

    stack_t stack{};
    stack.ss_sp = alternateStack;
    stack.ss_size = sizeof alternateStack;
    ::sigaltstack(&stack, nullptr);

    struct sigaction action {};
    action.sa_sigaction = onFatalSignal;
    // No deferring: a fault inside the handler reaches it again, and
    // claimCrash then ends the process instead of the kernel.
    action.sa_flags = SA_SIGINFO | SA_ONSTACK | SA_NODEFER;
    sigemptyset(&action.sa_mask);
    for (int signal : {SIGABRT, SIGSEGV, SIGFPE, SIGILL})
        ::sigaction(signal, &action, nullptr);
}

void setCrashTextFile(const std::filesystem::path& file)
{
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    ::localtime_r(&now, &local);
    localOffsetSeconds.store(local.tm_gmtoff);

    int fd = STDERR_FILENO;
    if (!file.empty()) {
        fd = ::open(file.c_str(), O_WRONLY | O_APPEND | O_CLOEXEC);
        if (fd < 0)
            fd = STDERR_FILENO;
    }
    textToLog.store(fd != STDERR_FILENO);
    const int previous = textDescriptor.exchange(fd);
    if (previous != STDERR_FILENO)
        ::close(previous);
}

void writeCrashText(const char* text)
{
    Line line;
    const bool toLog = textToLog.load();
    if (toLog)
        putTimePrefix(line);
    line.put(text);
    if (toLog)
        line.put('\r');
    line.put('\n');
    writeAll(textDescriptor.load(), line.data, line.size);
}

bool claimCrash(int exitCode)
{
    const long self = currentThreadId();
    long expected = 0;
    if (crashingThread.compare_exchange_strong(expected, self))
        return true;
    if (expected == self)
        endProcessNow(exitCode);
    for (;;)
        ::sleep(1);
}

int createCrashDump(const char* path)
{
    return ::open(path, O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
}

void writeCrashReport(int dump, const CrashReason& reason)
{
    char number[24];
    Line line;
    line.put("Vexlane crash report\nReason: ");
    if (reason.signal != 0) {
        line.put("signal ");
        line.put(formatDecimal(reason.signal, number));
        line.put(" (");
        line.put(signalName(reason.signal));
        line.put("), code ");
        line.put(formatDecimal(reason.code, number));
        if (reason.hasAddress) {
            line.put(", address 0x");
            auto value = reinterpret_cast<unsigned long>(reason.address);
            char hex[20];
            int n = 0;
            do {
                hex[n++] = "0123456789abcdef"[value & 15];
                value >>= 4;
            } while (value);
            while (n > 0)
                line.put(hex[--n]);
        }
    } else {
        line.put("terminate handler");
    }
    line.put('\n');
    if (reason.detail) {
        line.put("Detail: ");
        line.put(reason.detail);
        line.put('\n');
    }
    line.put("Process: ");
    line.put(formatDecimal(::getpid(), number));
    line.put("\nThread: ");
    line.put(formatDecimal(currentThreadId(), number));
    timespec now{};
    ::clock_gettime(CLOCK_REALTIME, &now);
    line.put("\nTime: ");
    line.put(formatDecimal(now.tv_sec, number));
    line.put("\nBacktrace:\n");
    writeAll(dump, line.data, line.size);

    void* frames[64];
    const int count = ::backtrace(frames, 64);
    ::backtrace_symbols_fd(frames, count, dump);
    writeText(dump, "Memory map:\n");
    copyFile("/proc/self/maps", dump);
    ::close(dump);
}

void endProcessNow(int code)
{
    ::_exit(code);
}

} // namespace vx::platform
