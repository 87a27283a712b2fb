// Owns a window endpoint for a test, from a process of its own.
//   window_owner <class> <title> serve
// Prints "ready <handle in hex>" and then one line per message handled:
// "copy <dwData> <payload>", "show <command>", "foreground".
// A copy-data message whose dwData is not 0 makes the handler sleep that many
// milliseconds first, and a payload that names a file gets that file created
// before the handler returns, so a test can tell the order of events.
// Input lines: "title <text>" sets the title (answers "titled"). The end of
// its input ends the program.
#include "platform/window_endpoint.h"

#include <poll.h>
#include <unistd.h>

#include <chrono>
#include <cinttypes>
#include <cstdio>
#include <fstream>
#include <iostream>
#include <string>
#include <thread>

using namespace vx::platform;

int main(int argc, char** argv)
{
    if (argc != 4) {
        std::cerr << "usage: window_owner <class> <title> serve\n";
        return 2;
    }
    auto window = createWindowEndpoint(argv[1], argv[2]);
    if (!window) {
        std::cout << "nowindow" << std::endl;
        return 3;
    }
    window->onCopyData = [](const CopyDataMessage& message) {
        const std::string text(message.payload.begin(), message.payload.end());
        if (message.dwData != 0)
            std::this_thread::sleep_for(std::chrono::milliseconds(message.dwData));
        if (!text.empty() && text.front() == '/')
            std::ofstream(text) << "handled";
        std::cout << "copy " << message.dwData << " " << text << std::endl;
        return true;
    };
    window->onShow = [](ShowCommand command) {
        std::cout << "show " << static_cast<int>(command) << std::endl;
    };
    window->onForeground = [] { std::cout << "foreground" << std::endl; };
    char handle[32];
    std::snprintf(handle, sizeof handle, "%016" PRIx64, window->handle());
    std::cout << "ready " << handle << std::endl;

    std::string pending;
    for (;;) {
        pollfd entries[2] = {{0, POLLIN, 0}, {window->pollDescriptor(), POLLIN, 0}};
        if (::poll(entries, 2, -1) < 0)
            continue;
        if (entries[1].revents & POLLIN)
            window->dispatchPending();
        if (entries[0].revents & (POLLIN | POLLHUP)) {
            char buffer[256];
            const ssize_t n = ::read(0, buffer, sizeof buffer);
            if (n <= 0)
                return 0;
            pending.append(buffer, static_cast<std::size_t>(n));
            for (auto end = pending.find('\n'); end != std::string::npos; end = pending.find('\n')) {
                const std::string line = pending.substr(0, end);
                pending.erase(0, end + 1);
                if (line.rfind("title ", 0) == 0) {
                    window->setTitle(line.substr(6));
                    std::cout << "titled" << std::endl;
                }
            }
        }
    }
}
