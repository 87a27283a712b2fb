#pragma once
// Crash capture: when the manager dies of a fatal signal or an unexpected
// termination, it writes a dump beside the program and ends at once with
// exit code 1. Installed first thing in main, before any configuration is
// read, and never removed.
//
// The dump is <baseDirectory>/dumps/VexlaneDump.dmp, overwritten by each
// crash; the "dumps" folder is not made here. The texts go to standard error,
// which leads into the system log once that is open (sendCrashTextsTo):
//   "Signal <n> received!"                     a fatal signal (the platform's number)
//   "Creating dump after exception. Code: <c>"  an unhandled exception (Windows)
//   "Terminate handler called! nullptr dump"   std::terminate
//   "Creating dump without exception context (terminate handler)"
//   "Creating dump-file error: <path>"          the dump file can't be made
// No lock is taken on these paths, the log's included, so a crash can't
// deadlock on it; see platform/crash_report.h for the dump's shape.
#include <filesystem>
#include <string>

#include "platform/crash_report.h"

namespace vx::maintenance {

// `pathText` is how the texts spell the base folder (the log's code page);
// empty: its native bytes.
void installCrashCapture(const std::filesystem::path& baseDirectory, const std::string& pathText = {});

// From now on the crash texts are appended to the system log's file, in the
// form of its standard-error lines.
void sendCrashTextsTo(const std::filesystem::path& logFile);

// The dump path set by installCrashCapture (empty before).
std::filesystem::path crashDumpPath();

// Writes the dump for `reason` to `path`: with the exception's context when
// it came through the unhandled exception filter (Windows), else "without
// exception context" (a signal, or the terminate handler). Signal-safe.
void writeCrashDump(const char* path, const platform::CrashReason& reason);
// The handler of std::terminate. Never returns.
[[noreturn]] void onTerminate();
// The unhandled exception filter's handler (Windows). Never returns.
[[noreturn]] void onUnhandledException(const platform::CrashReason& reason);
// The handler of the fatal signals. Never returns.
[[noreturn]] void onSignal(int number, const platform::CrashReason& reason);

} // namespace vx::maintenance
