#include "support/child_process.h"
#include "support/time_scale.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <thread>

extern char** environ;

namespace vx::test {
namespace {

using Clock = std::chrono::steady_clock;

int millisecondsLeft(Clock::time_point deadline)
{
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now());
    return static_cast<int>(std::max<long long>(0, left.count()));
}

} // namespace

std::unique_ptr<ChildProcess> ChildProcess::start(const std::filesystem::path& program,
                                                  const std::vector<std::string>& arguments)
{
    // A child that died before we wrote to it must not take the test along.
    std::signal(SIGPIPE, SIG_IGN);
    int toChild[2], fromChild[2];
    if (::pipe2(toChild, O_CLOEXEC) != 0)
        return nullptr;
    if (::pipe2(fromChild, O_CLOEXEC) != 0) {
        ::close(toChild[0]);
        ::close(toChild[1]);
        return nullptr;
    }
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, toChild[0], 0);
    posix_spawn_file_actions_adddup2(&actions, fromChild[1], 1);

    std::vector<std::string> texts{program.string()};
    texts.insert(texts.end(), arguments.begin(), arguments.end());
    std::vector<char*> argv;
    for (auto& text : texts)
        argv.push_back(text.data());
    argv.push_back(nullptr);

    pid_t pid = -1;
    const int rc = ::posix_spawn(&pid, program.c_str(), &actions, nullptr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    ::close(toChild[0]);
    ::close(fromChild[1]);
    if (rc != 0) {
        ::close(toChild[1]);
        ::close(fromChild[0]);
        return nullptr;
    }
    std::unique_ptr<ChildProcess> child(new ChildProcess);
    child->pid_ = pid;
    child->input_ = toChild[1];
    child->output_ = fromChild[0];
    return child;
}

ChildProcess::~ChildProcess()
{
    closeInput();
    if (!reaped_) {
        kill(SIGKILL);
        waitExit(5000);
    }
    if (output_ >= 0)
        ::close(output_);
}

std::optional<std::string> ChildProcess::readLine(int timeoutMs)
{
    const auto deadline = Clock::now() + std::chrono::milliseconds(scaledMs(timeoutMs));
    for (;;) {
        const auto end = pending_.find('\n');
        if (end != std::string::npos) {
            std::string line = pending_.substr(0, end);
            pending_.erase(0, end + 1);
            return line;
        }
        pollfd entry{static_cast<int>(output_), POLLIN, 0};
        const int ready = ::poll(&entry, 1, millisecondsLeft(deadline));
        if (ready < 0 && errno == EINTR)
            continue;
        if (ready <= 0)
            return std::nullopt;
        char buffer[256];
        const ssize_t n = ::read(output_, buffer, sizeof buffer);
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            return std::nullopt;
        pending_.append(buffer, static_cast<std::size_t>(n));
    }
}

bool ChildProcess::writeLine(const std::string& line)
{
    if (input_ < 0)
        return false;
    const std::string text = line + "\n";
    return ::write(input_, text.data(), text.size()) == static_cast<ssize_t>(text.size());
}

void ChildProcess::closeInput()
{
    if (input_ >= 0)
        ::close(input_);
    input_ = -1;
}

void ChildProcess::kill(int signal)
{
    if (!reaped_ && pid_ > 0)
        ::kill(static_cast<pid_t>(pid_), signal);
}

std::optional<int> ChildProcess::waitExit(int timeoutMs)
{
    if (reaped_)
        return exitStatus_;
    const auto deadline = Clock::now() + std::chrono::milliseconds(scaledMs(timeoutMs));
    for (;;) {
        int status = 0;
        const pid_t rc = ::waitpid(static_cast<pid_t>(pid_), &status, WNOHANG);
        if (rc == static_cast<pid_t>(pid_)) {
            reaped_ = true;
            exitStatus_ = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
            return exitStatus_;
        }
        if (rc < 0 && errno != EINTR) {
            reaped_ = true;
            return std::nullopt;
        }
        if (Clock::now() >= deadline)
            return std::nullopt;
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
}

std::filesystem::path testProgramPath(const std::string& name)
{
    std::error_code ec;
    const auto self = std::filesystem::read_symlink("/proc/self/exe", ec);
    return self.parent_path() / name;
}

} // namespace vx::test
