#pragma once
// Shared pieces of the supervision tests: a system log in a temporary file,
// free loopback ports, a context with its own published values, and a
// process lookup that only sees one installation's executables (so a test
// never finds or ends another test's services).
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <memory>
#include <string>
#include <vector>

#include "maintenance/log_buffer.h"
#include "maintenance/system_log.h"
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

// A loopback port nobody listens on at this moment.
inline int freeLoopbackPort()
{
    const int fd = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = 0;
    socklen_t size = sizeof(address);
    int port = 0;
    if (::bind(fd, reinterpret_cast<sockaddr*>(&address), sizeof(address)) == 0 &&
        ::getsockname(fd, reinterpret_cast<sockaddr*>(&address), &size) == 0)
        port = ntohs(address.sin_port);
    ::close(fd);
    return port;
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

// A process of `folder` with the image name, ignoring case; 0 when none.
inline long findProcessIn(const std::filesystem::path& folder, const std::string& imageName)
{
    for (const auto& entry : platform::listProcesses())
        if (platform::sameImageName(entry.imageName, imageName) && entry.executable.parent_path() == folder)
            return entry.pid;
    return 0;
}

} // namespace vx::test
