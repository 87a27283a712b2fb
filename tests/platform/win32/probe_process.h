#pragma once
// The Win32 tests' second processes: the probe (platform_probe.exe beside
// the tests) or any other program, started through the platform layer with
// its output captured, ended by pid when the object goes.
#include "platform/paths.h"
#include "platform/process.h"

#include <chrono>
#include <filesystem>
#include <future>
#include <memory>
#include <string>

namespace vx::test {

inline std::filesystem::path testsFolder()
{
    return platform::folderOf(platform::executablePath());
}

class ProbeProcess {
public:
    explicit ProbeProcess(const std::string& commandLine, const std::filesystem::path& folder = testsFolder())
    {
        platform::ProcessStartInfo info;
        info.commandLine = commandLine;
        info.workingDirectory = folder;
        info.searchFolder = folder;
        info.captureOutput = true;
        process = platform::startProcess(info);
    }
    ~ProbeProcess()
    {
        if (process && !process->waitForExit(0)) {
            platform::terminateProcess(process->pid());
            process->waitForExit(20000);
        }
        if (reader.valid())
            reader.wait();
    }
    // Reads the output until it holds `text`, the output ends, or 20 s pass
    // (the process is then ended, which ends the output).
    bool waitForOutput(const std::string& text)
    {
        if (!process)
            return false;
        if (reader.valid())
            reader.wait();
        if (output.find(text) != std::string::npos)
            return true;
        reader = std::async(std::launch::async, [this, text] {
            char buffer[256];
            while (output.find(text) == std::string::npos) {
                const long n = process->readOutput(buffer, sizeof buffer);
                if (n <= 0)
                    return;
                output.append(buffer, static_cast<std::size_t>(n));
            }
        });
        if (reader.wait_for(std::chrono::seconds(20)) != std::future_status::ready) {
            platform::terminateProcess(process->pid());
            reader.wait();
        }
        reader.get();
        return output.find(text) != std::string::npos;
    }
    long pid() const { return process ? process->pid() : 0; }

    std::unique_ptr<platform::StartedProcess> process;
    std::string output;
    std::future<void> reader;
};

} // namespace vx::test
