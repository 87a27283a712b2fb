#pragma once
// Shared pieces of the supervision tests: a system log in a temporary file,
// free loopback ports, a context with its own published values, and a
// process lookup that only sees one installation's executables (so a test
// never finds or ends another test's services).
#include <algorithm>
#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include <httplib.h>

#include "maintenance/log_buffer.h"
#include "maintenance/system_log.h"
#include "platform/paths.h"
#include "platform/process.h"
#include "supervision/service_context.h"
#include "support/captured_stderr.h"
#include "support/temp_dir.h"

namespace vx::test {

// Installs a system log at threshold `level` for one scope; lines() gives
// its lines without the time stamp ("[LEVEL]text").
class LogCapture {
public:
    explicit LogCapture(int level = 0)
    {
        auto log = std::make_unique<maintenance::LogBuffer>(dir_.path() / "log.txt", maintenance::LogMode::appendQuiet);
        log->setMinLevel(level);
        maintenance::setSystemLog(std::move(log));
    }
    ~LogCapture() { maintenance::setSystemLog(nullptr); }
    std::vector<std::string> lines() const
    {
        std::vector<std::string> result;
        const std::string text = readFileBytes(dir_.path() / "log.txt");
        std::size_t start = 0;
        while (start < text.size()) {
            std::size_t end = text.find("\r\n", start);
            if (end == std::string::npos)
                end = text.size();
            std::string line = text.substr(start, end - start);
            const auto cut = line.find(']');
            result.push_back(cut == std::string::npos ? line : line.substr(cut + 1));
            start = end + 2;
        }
        return result;
    }
    bool has(const std::string& line) const
    {
        const auto all = lines();
        return std::find(all.begin(), all.end(), line) != all.end();
    }
    int count(const std::string& line) const
    {
        const auto all = lines();
        return static_cast<int>(std::count(all.begin(), all.end(), line));
    }

private:
    TempDir dir_;
};

// A loopback port nobody listens on at this moment: one the system gives a
// listener, which is then closed again. (A server that was only bound keeps
// its socket: it is closed by stop() once it listens.)
inline int freeLoopbackPort()
{
    httplib::Server probe;
    const int port = probe.bind_to_any_port("127.0.0.1");
    if (port <= 0)
        return 0;
    std::thread listener([&probe] { probe.listen_after_bind(); });
    for (int i = 0; i < 2000 && !probe.is_running(); ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    probe.stop();
    listener.join();
    return port;
}

// Waits up to timeoutMs, looking every 10 ms, for `condition` to hold.
inline bool waitUntil(const std::function<bool()>& condition, int timeoutMs)
{
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeoutMs);
    while (!condition()) {
        if (std::chrono::steady_clock::now() >= end)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return true;
}

// A context with published values of its own and no real sleeps unless a
// test wants them.
struct TestServices {
    std::atomic<bool> shuttingDown{false};
    std::atomic<int> fpsRecognition{-1};
    std::atomic<int> statusControl{-1};
    std::atomic<int> statusMes{-1};
    std::shared_ptr<supervision::ServiceContext> context =
        std::make_shared<supervision::ServiceContext>(shuttingDown, fpsRecognition, statusControl, statusMes);
    std::vector<int> sleeps;
    supervision::ServiceSettings settings;

    TestServices()
    {
        context->sleep = [this](int ms) { sleeps.push_back(ms); };
        context->settings = [this] { return settings; };
    }
    supervision::ServiceContext& operator*() { return *context; }
    supervision::ServiceContext* operator->() { return context.get(); }
};

// A process of `folder` with the image name (without the platform's suffix),
// ignoring case; 0 when none.
inline long findProcessIn(const std::filesystem::path& folder, const std::string& imageName)
{
    const std::string image = imageName + platform::executableSuffix;
    for (const auto& entry : platform::listProcesses())
        if (platform::sameImageName(entry.imageName, image) && entry.executable.parent_path() == folder)
            return entry.pid;
    return 0;
}

} // namespace vx::test
