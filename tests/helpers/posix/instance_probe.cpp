// Starts the way the manager does, as far as being alone is concerned.
//   instance_probe <lock name> <class>
// The first instance prints "first", opens a window of the class and serves
// it, printing "show <command>" and "foreground" as they come, until its input
// ends. A later instance asks the first one's window to come forward, prints
// "raised" (or "alone" when it found no window) and exits with 1.
#include "platform/single_instance.h"
#include "platform/window_endpoint.h"

#include <poll.h>
#include <unistd.h>

#include <iostream>

using namespace vx::platform;

int main(int argc, char** argv)
{
    if (argc != 3) {
        std::cerr << "usage: instance_probe <lock name> <class>\n";
        return 2;
    }
    std::unique_ptr<NamedLock> once;
    if (!acquireSingleInstance(argv[1], once)) {
        std::cout << (raiseExistingInstance(argv[2]) ? "raised" : "alone") << std::endl;
        return 1;
    }
    auto window = createWindowEndpoint(argv[2], "main");
    if (!window) {
        std::cout << "nowindow" << std::endl;
        return 3;
    }
    window->onShow = [](ShowCommand command) {
        std::cout << "show " << static_cast<int>(command) << std::endl;
    };
    window->onForeground = [] { std::cout << "foreground" << std::endl; };
    std::cout << "first" << std::endl;
    for (;;) {
        pollfd entries[2] = {{0, POLLIN, 0}, {window->pollDescriptor(), POLLIN, 0}};
        if (::poll(entries, 2, -1) < 0)
            continue;
        if (entries[1].revents & POLLIN)
            window->dispatchPending();
        if (entries[0].revents & (POLLIN | POLLHUP)) {
            char buffer[64];
            if (::read(0, buffer, sizeof buffer) <= 0)
                return 0;
        }
    }
}
