#pragma once
// A real second process for a test: started with posix_spawn or
// CreateProcessW, its standard input and output piped to the test, every
// wait bounded. A child still
// running when the object goes is killed and reaped.
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace vx::test {

class ChildProcess {
public:
    // Null when the program can't be started. Standard error is shared with
    // the test, so a helper's complaints show in the test log.
    static std::unique_ptr<ChildProcess> start(const std::filesystem::path& program,
                                               const std::vector<std::string>& arguments);
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    long pid() const { return pid_; }
    // One line of the child's output without its newline; nothing when the
    // time runs out or the output ends first.
    std::optional<std::string> readLine(int timeoutMs);
    bool writeLine(const std::string& line);
    void closeInput();
    void kill(int signal);
    // The exit code, or 128 + the signal number; nothing on timeout.
    std::optional<int> waitExit(int timeoutMs);

private:
    ChildProcess() = default;

    long pid_ = -1;
    long process_ = -1;   // the process handle (Windows)
    long input_ = -1;
    long output_ = -1;
    bool reaped_ = false;
    std::optional<int> exitStatus_;
    std::string pending_;
};

// A program built beside the running test executable (the helpers).
std::filesystem::path testProgramPath(const std::string& name);

} // namespace vx::test
