// Holds a named lock for a test, from a process of its own.
//   lock_holder <name> lock|try
// Answers "locked" or "busy" on its output, then obeys lines on its input:
// "try" (answers "locked"/"busy"), "unlock" (answers "unlocked"), "spawn"
// (starts "sleep 30" in a session of its own, answers "spawned <pid>";
// the test ends that one itself). At the end
// of its input it leaves; whatever it holds is then dropped by the system.
#include "platform/named_lock.h"

#include <spawn.h>
#include <unistd.h>

#include <iostream>
#include <string>

extern char** environ;

static long spawnSleeper()
{
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSID);
    char program[] = "/bin/sleep";
    char seconds[] = "30";
    char* argv[] = {program, seconds, nullptr};
    pid_t pid = -1;
    const int rc = ::posix_spawn(&pid, program, nullptr, &attributes, argv, environ);
    posix_spawnattr_destroy(&attributes);
    return rc == 0 ? pid : -1;
}

int main(int argc, char** argv)
{
    if (argc != 3) {
        std::cerr << "usage: lock_holder <name> lock|try\n";
        return 2;
    }
    auto lock = vx::platform::createNamedLock(argv[1]);
    if (!lock) {
        std::cout << "nolock" << std::endl;
        return 3;
    }
    const std::string mode = argv[2];
    const bool got = mode == "lock" ? lock->lock() : lock->tryLock();
    std::cout << (got ? "locked" : "busy") << std::endl;
    std::string line;
    while (std::getline(std::cin, line)) {
        if (line == "try") {
            std::cout << (lock->tryLock() ? "locked" : "busy") << std::endl;
        } else if (line == "spawn") {
            std::cout << "spawned " << spawnSleeper() << std::endl;
        } else if (line == "unlock") {
            lock->unlock();
            std::cout << "unlocked" << std::endl;
        }
    }
    return 0;
}
