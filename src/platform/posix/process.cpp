// Starting a process on POSIX: posix_spawn with its own session, standard
// streams on /dev/null, the working directory set in the child, and a reaper
// for children that outlive the wait.
#include "platform/process.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <thread>

#include "platform/command_line.h"
#include "platform/posix/unique_fd.h"

extern char** environ;

namespace vx::platform {

namespace {

bool isExecutableFile(const std::filesystem::path& path)
{
    std::error_code ec;
    return std::filesystem::is_regular_file(path, ec) && ::access(path.c_str(), X_OK) == 0;
}

// The executable for the command line's first word: the search folder
// first, then each folder of PATH.
std::filesystem::path findExecutable(const std::string& name, const ProcessStartInfo& info)
{
    if (name.empty())
        return {};
    if (name.find('/') != std::string::npos) {
        std::filesystem::path path(name);
        if (path.is_relative() && !info.workingDirectory.empty())
            path = info.workingDirectory / path;
        return isExecutableFile(path) ? path : std::filesystem::path();
    }
    if (!info.searchFolder.empty() && isExecutableFile(info.searchFolder / name))
        return info.searchFolder / name;
    const char* pathVariable = std::getenv("PATH");
    std::string folders = pathVariable ? pathVariable : "";
    std::size_t start = 0;
    while (start <= folders.size()) {
        std::size_t end = folders.find(':', start);
        if (end == std::string::npos)
            end = folders.size();
        const std::string folder = folders.substr(start, end - start);
        if (!folder.empty() && isExecutableFile(std::filesystem::path(folder) / name))
            return std::filesystem::path(folder) / name;
        start = end + 1;
    }
    return {};
}

int decodeStatus(int status)
{
    if (WIFEXITED(status))
        return WEXITSTATUS(status);
    if (WIFSIGNALED(status))
        return 128 + WTERMSIG(status);
    return -1;
}

class PosixProcess final : public StartedProcess {
public:
    PosixProcess(pid_t pid, posix::UniqueFd output) : pid_(pid), output_(std::move(output)) {}

    ~PosixProcess() override
    {
        if (reaped_)
            return;
        // Still running (or not yet looked at): somebody must collect its end
        // so that it doesn't stay a zombie. The thread lives as long as the
        // child does.
        const pid_t pid = pid_;
        try {
            std::thread([pid] {
                int status = 0;
                while (::waitpid(pid, &status, 0) < 0 && errno == EINTR) {
                }
            }).detach();
        } catch (...) {
            // No thread to be had: the child becomes a zombie until we exit.
        }
    }

    long pid() const override { return pid_; }

    bool waitForExit(int timeoutMs) override
    {
        if (reaped_)
            return true;
        using Clock = std::chrono::steady_clock;
        const auto deadline = Clock::now() + std::chrono::milliseconds(std::max(0, timeoutMs));
        // A pidfd wakes us at the child's end; without one (old kernels) we
        // look every 10 ms.
        posix::UniqueFd pidfd(static_cast<int>(::syscall(SYS_pidfd_open, pid_, 0)));
        for (;;) {
            if (tryReap())
                return true;
            const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()).count();
            if (left <= 0)
                return false;
            if (pidfd.valid()) {
                pollfd p{pidfd.get(), POLLIN, 0};
                ::poll(&p, 1, static_cast<int>(left));
            } else {
                std::this_thread::sleep_for(std::chrono::milliseconds(std::min<long long>(left, 10)));
            }
        }
    }

    int exitCode() const override { return exitCode_; }

    long readOutput(char* buffer, std::size_t size) override
    {
        if (!output_.valid())
            return -1;
        ssize_t n;
        do {
            n = ::read(output_.get(), buffer, size);
        } while (n < 0 && errno == EINTR);
        return static_cast<long>(n);
    }

private:
    bool tryReap()
    {
        int status = 0;
        pid_t r;
        do {
            r = ::waitpid(pid_, &status, WNOHANG);
        } while (r < 0 && errno == EINTR);
        if (r == pid_) {
            reaped_ = true;
            exitCode_ = decodeStatus(status);
            return true;
        }
        if (r < 0) {
            // Somebody else reaped it (or it isn't ours): it has ended.
            reaped_ = true;
            exitCode_ = -1;
            return true;
        }
        return false;
    }

    pid_t pid_;
    posix::UniqueFd output_;
    bool reaped_ = false;
    int exitCode_ = -1;
};

} // namespace

std::unique_ptr<StartedProcess> startProcess(const ProcessStartInfo& info)
{
    std::vector<std::string> arguments = splitCommandLine(info.commandLine);
    if (arguments.empty())
        return nullptr;
    const std::filesystem::path program = findExecutable(arguments[0], info);
    if (program.empty())
        return nullptr;

    posix_spawn_file_actions_t actions;
    posix_spawnattr_t attributes;
    if (posix_spawn_file_actions_init(&actions) != 0)
        return nullptr;
    if (posix_spawnattr_init(&attributes) != 0) {
        posix_spawn_file_actions_destroy(&actions);
        return nullptr;
    }
    // Both ends close on exec, so no other child started meanwhile inherits
    // them; dup2 gives this child its own copies as standard streams.
    int outputPipe[2] = {-1, -1};
    if (info.captureOutput && ::pipe2(outputPipe, O_CLOEXEC) != 0) {
        posix_spawn_file_actions_destroy(&actions);
        posix_spawnattr_destroy(&attributes);
        return nullptr;
    }
    posix::UniqueFd readEnd(outputPipe[0]);
    posix::UniqueFd writeEnd(outputPipe[1]);
    posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);
    if (info.captureOutput) {
        posix_spawn_file_actions_adddup2(&actions, writeEnd.get(), 1);
        posix_spawn_file_actions_adddup2(&actions, writeEnd.get(), 2);
    } else {
        posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", O_WRONLY, 0);
        posix_spawn_file_actions_addopen(&actions, 2, "/dev/null", O_WRONLY, 0);
    }
    if (!info.inheritHandles)
        posix_spawn_file_actions_addclosefrom_np(&actions, 3);
    if (!info.workingDirectory.empty())
        posix_spawn_file_actions_addchdir_np(&actions, info.workingDirectory.c_str());

    // Its own session, so that it outlives us; a clean signal state, since
    // our threads may block or ignore signals that the child needs.
    sigset_t empty, all;
    sigemptyset(&empty);
    sigfillset(&all);
    sigdelset(&all, SIGKILL);
    sigdelset(&all, SIGSTOP);
    posix_spawnattr_setsigmask(&attributes, &empty);
    posix_spawnattr_setsigdefault(&attributes, &all);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);

    std::vector<char*> argv;
    for (auto& argument : arguments)
        argv.push_back(argument.data());
    argv.push_back(nullptr);

    pid_t pid = -1;
    const int rc = ::posix_spawn(&pid, program.c_str(), &actions, &attributes, argv.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    posix_spawnattr_destroy(&attributes);
    writeEnd = posix::UniqueFd();
    if (rc != 0)
        return nullptr;
    return std::make_unique<PosixProcess>(pid, std::move(readEnd));
}

bool terminateProcess(long pid)
{
    if (pid <= 0)
        return false;
    return ::kill(static_cast<pid_t>(pid), SIGKILL) == 0;
}

} // namespace vx::platform
