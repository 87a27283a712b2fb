#pragma once
// What the crash capture asks of the system at the moment the process dies:
// catching the fatal signals, writing its texts where standard error leads,
// writing the dump, and ending the process at once.
//
// Everything marked "signal-safe" may run inside a signal handler: it takes
// no lock, allocates nothing and calls only async-signal-safe functions. The
// first platform writes a minidump; here the dump is a text report:
//
//   Vexlane crash report
//   Reason: signal 11 (SIGSEGV), code 1, address 0x0      (or: terminate handler)
//   Detail: <text>                                        (only when there is one)
//   Process: <pid>
//   Thread: <thread id>
//   Time: <seconds since 1970, UTC>
//   Backtrace:
//   <one line per frame of the faulting thread>
//   Memory map:
//   <a copy of /proc/self/maps>
#include <filesystem>

namespace vx::platform {

struct CrashReason {
    int signal = 0;              // 0: not a signal (the terminate handler)
    int code = 0;                // the signal's si_code, or the exception's code
    bool exception = false;      // came through the unhandled exception filter (Windows)
    bool hasAddress = false;         // a fault of the hardware: `address` is set
    const void* address = nullptr;   // the faulting address, null included
    const char* detail = nullptr;    // e.g. what an uncaught exception said; may be null
};

using FatalSignalHandler = void (*)(int signal, const CrashReason& reason);

// Catches SIGABRT, SIGSEGV, SIGFPE and SIGILL on every thread and calls
// `handler` on the faulting thread. The calling thread gets a stack of its own
// for the handler, so an overflow of its stack is caught as well. Also loads
// what the backtrace needs now, not inside a handler.
void installFatalSignalHandlers(FatalSignalHandler handler);

// Standard error of the crash texts: from now on they are appended to `file`
// as the system log's standard-error lines ("[<local time>] <text>", CR LF).
// Empty: the process's own standard error again. Not signal-safe; the local
// time offset is taken here, so a change of daylight saving time later in
// the run shifts the stamp of crash lines by that change.
void setCrashTextFile(const std::filesystem::path& file);

// Signal-safe: one crash text, with its line end, to where the texts go.
void writeCrashText(const char* text);

// Signal-safe: true for the first thread that crashes. A second thread that
// crashes meanwhile never returns (the first one ends the process); the same
// thread crashing again inside its handler ends the process with `exitCode`.
bool claimCrash(int exitCode);

// Signal-safe: the dump file, created or overwritten, readable by its owner;
// -1 when it can't be created.
int createCrashDump(const char* path);
// Signal-safe: the report above into the dump file, then the file closed.
void writeCrashReport(int dump, const CrashReason& reason);

// Signal-safe: ends the process at once with `code`, no destructor run.
[[noreturn]] void endProcessNow(int code);

// Signal-safe: decimal text of a number into `out` (at least 24 bytes).
const char* formatDecimal(long long value, char* out);

} // namespace vx::platform
