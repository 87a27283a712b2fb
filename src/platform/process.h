#pragma once
// Starting, finding and ending other processes: what the service launcher,
// the service workers and the stream control ask of the system.
//
// A started program gets its own session (POSIX) so that it outlives the
// manager, its standard streams go to the null device, and no child is ever
// left a zombie: a child that still runs when its StartedProcess goes is
// reaped in the background.
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace vx::platform {

struct ProcessStartInfo {
    // UTF-8; split by the rules of command_line.h. The first word names the
    // executable: looked for in `searchFolder` first, then on PATH (a name
    // with a separator in it is taken as it stands, relative to the working
    // directory).
    std::string commandLine;
    std::filesystem::path workingDirectory;
    std::filesystem::path searchFolder;
    // The child keeps the descriptors (handles) that the manager leaves
    // inheritable; otherwise it starts with standard streams only. On
    // Windows it inherits the standard handles only, never the files the
    // manager has open.
    bool inheritHandles = false;
    // The first platform's CREATE_NO_WINDOW. A POSIX child has no console in
    // any case, so this changes nothing there.
    bool noConsole = false;
    // Standard output and standard error both go into one anonymous pipe
    // whose read end stays with the StartedProcess (readOutput); our copy of
    // the write end is closed before startProcess returns. Other children
    // never inherit either end.
    bool captureOutput = false;
};

// One started process. Going out of scope closes the handle, never the
// process.
class StartedProcess {
public:
    virtual ~StartedProcess() = default;
    virtual long pid() const = 0;
    // Waits up to timeoutMs for the process to end; true when it ended.
    virtual bool waitForExit(int timeoutMs) = 0;
    // The exit code once waitForExit said true: the code the process gave,
    // or 128 + the signal that ended it.
    virtual int exitCode() const = 0;
    // With captureOutput: up to `size` bytes of the pipe, blocking until some
    // come; 0 at the end of the output, -1 on an error or without a pipe.
    virtual long readOutput(char* /*buffer*/, std::size_t /*size*/) { return -1; }
};

// Null when the executable can't be found or the process can't be made.
std::unique_ptr<StartedProcess> startProcess(const ProcessStartInfo& info);

struct ProcessEntry {
    long pid = 0;
    std::string imageName;               // the executable's file name, as the system reports it
    std::filesystem::path executable;    // full path when it can be read, else empty
};

// The live processes of the machine (ended ones not yet reaped left out).
// Empty when the list can't be had.
std::vector<ProcessEntry> listProcesses();

// A process whose image name equals `imageName` ignoring case (ASCII), or 0
// when there is none or the list can't be had.
long findProcessByName(const std::string& imageName);

// Ends the process at once (the first platform's TerminateProcess with code
// 0; SIGKILL here). False when it can't be ended (gone, or not ours).
bool terminateProcess(long pid);

// Compares two image names the way findProcessByName does.
bool sameImageName(const std::string& a, const std::string& b);

} // namespace vx::platform
