// Dies the way the test asks, with the crash capture installed.
//   crash_child <base folder> <how> <text file> log|stderr
// <how>: segv, abort, terminate, thread-segv, none.
// "log": the texts file is opened as a system log (standard error leads
// into it, as in the manager); "stderr": the process's own standard error is
// pointed at it. "none" leaves normally with 0.
#include "maintenance/crash_capture.h"
#include "maintenance/system_log.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>
#include <iostream>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>

namespace {

// The checked builds would stop at the null store themselves; this one must
// reach the crash capture as a real SIGSEGV.
[[gnu::noinline, gnu::no_sanitize("null")]] void writeThroughNull()
{
    volatile int* volatile nowhere = nullptr;
    *nowhere = 7;
}

} // namespace

int main(int argc, char* argv[])
{
    using namespace vx::maintenance;
    if (argc != 5)
        return 2;
    const std::string how = argv[2];
    installCrashCapture(argv[1]);
    if (std::string(argv[4]) == "log") {
        setSystemLog(std::make_unique<LogBuffer>(argv[3], LogMode::appendStart));
        attachToStandardError(*systemLog());
        sendCrashTextsTo(argv[3]);
        systemLog()->writeLine("before the crash");
    } else {
        const int fd = ::open(argv[3], O_WRONLY | O_CREAT | O_TRUNC, 0644);
        ::dup2(fd, STDERR_FILENO);
    }
    if (how == "segv")
        writeThroughNull();
    else if (how == "abort")
        std::abort();
    else if (how == "terminate")
        throw std::runtime_error("nobody catches this");
    else if (how == "thread-segv")
        std::thread(writeThroughNull).join();
    return 0;
}
