// A second process for the Win32 platform tests.
//   platform_probe lock <name>           takes the named lock, says "locked", waits
//   platform_probe window <title>        serves a window of class "VexlaneProbe";
//                                        says "ready", then "copy <dwData> <cbData> [<payload>]"
//                                        per message; the handler's result is payload == "ping"
//   platform_probe block <name> <text>   creates the picture block with the text, says "ready"
//   platform_probe wait [args...]        says "ready" and waits
//   platform_probe exit <code>           leaves with the code
//   platform_probe crash                 crash capture below its own folder, then a null write
//   platform_probe raise                 crash capture, then an exception no signal stands for
// Every waiting mode waits until it is ended from outside.
#include "maintenance/crash_capture.h"
#include "platform/named_lock.h"
#include "platform/paths.h"
#include "platform/shared_block.h"
#include "platform/window_endpoint.h"

#include <windows.h>

#include <cstdlib>
#include <cstring>
#include <iostream>
#include <string>

using namespace vx::platform;

namespace {

[[noreturn]] void waitForEver()
{
    for (;;)
        ::Sleep(INFINITE);
}

[[gnu::noinline]] void writeThroughNull()
{
    volatile int* volatile nowhere = nullptr;
    *nowhere = 7;
}

} // namespace

int main(int argc, char** argv)
{
    const std::string mode = argc > 1 ? argv[1] : "";
    if (mode == "lock" && argc == 3) {
        auto lock = createNamedLock(argv[2]);
        if (!lock || !lock->lock())
            return 3;
        std::cout << "locked" << std::endl;
        waitForEver();
    }
    if (mode == "window" && argc == 3) {
        auto window = createWindowEndpoint("VexlaneProbe", argv[2]);
        if (!window)
            return 3;
        window->onCopyData = [](const CopyDataMessage& message) {
            const std::string payload(message.payload.begin(), message.payload.end());
            std::cout << "copy " << message.dwData << ' ' << message.cbData << " [" << payload << ']' << std::endl;
            return payload == "ping";
        };
        std::cout << "ready" << std::endl;
        for (;;)
            window->dispatchOne(-1);
    }
    if (mode == "block" && argc == 4) {
        auto block = createSharedBlock(argv[2], 500000);
        if (!block)
            return 3;
        std::strcpy(block->writableData(), argv[3]);
        std::cout << "ready" << std::endl;
        waitForEver();
    }
    if (mode == "wait") {
        std::cout << "ready" << std::endl;
        waitForEver();
    }
    if (mode == "exit" && argc == 3)
        return std::atoi(argv[2]);
    if (mode == "crash" || mode == "raise") {
        ::SetErrorMode(3);
        vx::maintenance::installCrashCapture(folderOf(executablePath()));
        if (mode == "crash")
            writeThroughNull();
        ::RaiseException(0xE0000001, EXCEPTION_NONCONTINUABLE, 0, nullptr);
        return 0;
    }
    std::cerr << "usage: platform_probe lock|window|block|wait|exit|crash|raise ...\n";
    return 2;
}
