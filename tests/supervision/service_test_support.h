#pragma once
// Shared pieces of the supervision tests: a system log in a temporary file,
// free loopback ports, a service answering on one, a context with its own published values, and a
// process lookup that only sees one installation's executables (so a test
// never finds or ends another test's services).
#include <algorithm>
#include <atomic>
#include <chrono>
#include <functional>
#include <initializer_list>
#include <memory>
#include <mutex>
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
#include "support/installation.h"
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
    std::vector<std::string> lines() const { return logTexts(dir_.path() / "log.txt"); }
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

// A service inside the test: answers every request of the services on a
// loopback port and notes each as "METHOD /path k=v...".
class LocalService {
public:
    LocalService()
    {
        port_ = server_.bind_to_any_port("127.0.0.1");
        server_.set_logger([this](const httplib::Request& req, const httplib::Response&) {
            std::lock_guard<std::mutex> lock(mutex_);
            std::string text = req.method + " " + req.path;
            for (const auto& [k, v] : req.params)
                text += " " + k + "=" + v;
            requests_.push_back(text);
        });
        server_.Get("/FPS", [this](const httplib::Request&, httplib::Response& res) {
            std::lock_guard<std::mutex> lock(mutex_);
            res.status = fpsStatus_;
            res.set_content(fpsBody_, "application/json");
        });
        auto ok = [](const httplib::Request&, httplib::Response& res) { res.set_content("OK", "text/plain"); };
        for (const char* path : {"/CheckRun", "/StopServer", "/UpdateConfig"})
            server_.Get(path, ok);
        server_.Post("/GenerateReport", ok);
        server_.Post("/HandSignal", ok);
        thread_ = std::thread([this] { server_.listen_after_bind(); });
        // Bound already, so early connections wait in the backlog; this only
        // keeps the first request from racing the accept loop's start.
        waitFor([this] { return server_.is_running(); }, 2000);
    }
    ~LocalService()
    {
        server_.stop();
        thread_.join();
    }
    int port() const { return port_; }
    void answerFps(int status, const std::string& body)
    {
        std::lock_guard<std::mutex> lock(mutex_);
        fpsStatus_ = status;
        fpsBody_ = body;
    }
    std::vector<std::string> requests()
    {
        std::lock_guard<std::mutex> lock(mutex_);
        return requests_;
    }
    // The server notes a request after its answer went out: waits (bounded)
    // until `count` requests are noted.
    std::vector<std::string> requests(std::size_t count)
    {
        waitFor([&] { return requests().size() >= count; }, 3000);
        return requests();
    }

private:
    httplib::Server server_;
    std::thread thread_;
    int port_ = 0;
    std::mutex mutex_;
    int fpsStatus_ = 200;
    std::string fpsBody_ = "{\"fps\":17}";
    std::vector<std::string> requests_;
};

// A started process that has ended (`ends`, with `code`) by the end of any
// wait, or runs on; the waits asked for are noted in `waits` when given.
struct FakeProcess : platform::StartedProcess {
    bool ends = false;
    int code = 0;
    std::vector<int>* waits = nullptr;
    long pid() const override { return 4242; }
    bool waitForExit(int timeoutMs) override
    {
        if (waits)
            waits->push_back(timeoutMs);
        return ends;
    }
    int exitCode() const override { return code; }
};

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

// Ends every process of `folder` with one of the image names, by pid; true
// when none is left.
inline bool endProcessesIn(const std::filesystem::path& folder, std::initializer_list<const char*> names)
{
    bool gone = true;
    for (const char* name : names) {
        for (long pid; (pid = findProcessIn(folder, name)) != 0;) {
            if (!platform::terminateProcess(pid) || !waitFor([&] { return findProcessIn(folder, name) != pid; }, 2000))
                break;
        }
        gone = gone && findProcessIn(folder, name) == 0;
    }
    return gone;
}

} // namespace vx::test
