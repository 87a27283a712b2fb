// The manager's cost per tick with N live streams (the first argument, 16
// unless given, at most 100), on a temporary installation whose streams play
// a generated clip of 160x120 at 2 frames a second (so that 100 stream
// processes fit on a small machine). No service is installed: the watch's
// starts of them fail at once, as on a machine without them.
//
// Part one, the real `vexlane` started headless on it: its utime + stime
// from /proc/<pid>/stat over at least 30 ticks once every stream runs,
// beside the reference, the mean CPU share of one stream process over the
// same seconds; and its resident memory at the end. The streams are started
// by the product's own rules (each start watched for five seconds), so 100
// streams take some minutes to come up.
//
// Part two, the tick's punctuality: the manager's core run in this process
// on the same installation (the configuration steps, the stream control, the
// real timer thread and its hooks), this thread playing the window: it marks
// a tick every 1000 ms on a fixed schedule and handles the streams' answers
// in between. The timer thread's wait hook notes when it last woke; the
// first hook of a pass takes that as the pass's start. A tick's lateness is
// the start of the pass that served it minus its scheduled time; printed as
// max and p99 over at least 30 ticks, beside the period, with the longest
// pass. Starts are watched for 100 ms instead of five seconds here, so the
// streams come up fast; the ticks are measured once all run.
//
// Targets: at most 1% of one core at 16 streams, 5% and 150 MB at 100; no
// tick late by more than 200 ms at 100. The load (`uptime`) is printed
// first and last. Everything started is ended by pid, with bounded waits.
//     tick_cpu_bench 16
//     tick_cpu_bench 100
#include <algorithm>
#include <arpa/inet.h>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <memory>
#include <mutex>
#include <netinet/in.h>
#include <signal.h>
#include <spawn.h>
#include <sstream>
#include <string>
#include <sys/socket.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

#include "config/camera_config.h"
#include "config/control_config.h"
#include "config/messenger_config.h"
#include "config/recognition_config.h"
#include "config/text_codec.h"
#include "core/create_steps.h"
#include "core/service_wiring.h"
#include "core/timer_thread.h"
#include "maintenance/system_log.h"
#include "platform/window_endpoint.h"
#include "proc_figures.h"
#include "supervision/http_clients.h"
#include "supervision/service_context.h"
#include "supervision/service_watch.h"
#include "supervision/stream_channel.h"
#include "supervision/stream_control.h"

extern char** environ;
namespace fs = std::filesystem;
using namespace vx;
using bench::cpuTicks;
using bench::readText;
using Clock = std::chrono::steady_clock;

namespace {

constexpr int measuredTicks = 30;
constexpr int periodMs = 1000;

// The whole file, empty when it can't be read. /proc files of a process
// that ends meanwhile fail in the middle of a read (which a stream would
// throw for), so plain calls.
std::string readText(const fs::path& path)
{
    std::string text;
    const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0)
        return text;
    char buffer[4096];
    for (ssize_t got; (got = ::read(fd, buffer, sizeof buffer)) > 0;)
        text.append(buffer, static_cast<std::size_t>(got));
    ::close(fd);
    return text;
}

void write(const fs::path& path, const std::string& text) { std::ofstream(path, std::ios::binary) << text; }

void printLoad(const char* when)
{
    std::string line = "unknown";
    if (FILE* pipe = ::popen("uptime", "r")) {
        char buffer[256] = {};
        if (std::fgets(buffer, sizeof buffer, pipe))
            line = buffer;
        ::pclose(pipe);
    }
    while (!line.empty() && (line.back() == '\n' || line.back() == ' '))
        line.pop_back();
    std::printf("load %s: %s\n", when, line.c_str());
    std::fflush(stdout);
}

// Live processes whose command line names `folder`, or whose folder it is
// (a zombie has neither).
std::vector<long> processesOf(const fs::path& folder)
{
    std::vector<long> pids;
    std::error_code ec;
    for (const auto& entry : fs::directory_iterator("/proc", ec)) {
        const std::string name = entry.path().filename().string();
        if (name.find_first_not_of("0123456789") != std::string::npos) continue;
        std::error_code e;
        const fs::path cwd = fs::read_symlink(entry.path() / "cwd", e);
        if (readText(entry.path() / "cmdline").find(folder.string()) != std::string::npos || (!e && cwd == folder))
            pids.push_back(std::stol(name));
    }
    return pids;
}

// Ends every process of the installation but `except` by pid, SIGTERM then
// SIGKILL, within a few seconds.
void endProcessesOf(const fs::path& folder, long except)
{
    for (int round = 0; round < 40; ++round) {
        std::vector<long> left = processesOf(folder);
        left.erase(std::remove(left.begin(), left.end(), except), left.end());
        if (left.empty())
            return;
        for (long pid : left)
            ::kill(static_cast<pid_t>(pid), round < 20 ? SIGTERM : SIGKILL);
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
    }
}

// The resident memory in MB from /proc/<pid>/status, -1 when unknown.
double residentMb(long pid)
{
    const std::string status = readText("/proc/" + std::to_string(pid) + "/status");
    const auto at = status.find("VmRSS:");
    return at == std::string::npos ? -1.0 : std::stod(status.substr(at + 6)) / 1024.0;
}

// A loopback port nobody listens on at this moment.
int freeLoopbackPort()
{
    const int fd = ::socket(AF_INET, SOCK_STREAM, 0);
    if (fd < 0)
        return 0;
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    int port = 0;
    if (::bind(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0 &&
        ::getsockname(fd, reinterpret_cast<sockaddr*>(&address), &length) == 0)
        port = ntohs(address.sin_port);
    ::close(fd);
    return port;
}

bool runTool(const std::vector<std::string>& args)
{
    std::vector<char*> argv;
    for (const std::string& arg : args)
        argv.push_back(const_cast<char*>(arg.c_str()));
    argv.push_back(nullptr);
    pid_t pid = 0;
    if (posix_spawn(&pid, argv[0], nullptr, nullptr, argv.data(), environ) != 0)
        return false;
    int status = 0;
    for (int i = 0; i < 600; ++i) {
        if (::waitpid(pid, &status, WNOHANG) == pid)
            return WIFEXITED(status) && WEXITSTATUS(status) == 0;
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
    }
    ::kill(pid, SIGKILL);
    ::waitpid(pid, &status, 0);
    return false;
}

struct Installation {
    fs::path root, folder;
    std::vector<std::int32_t> ids;
};

bool install(Installation& in, int streams)
{
    in.root = fs::temp_directory_path() / ("vx-tick-bench-" + std::to_string(::getpid()));
    in.folder = in.root / "vexlane";
    const fs::path configs = in.folder / "configs", logs = in.folder / "logs", clips = in.root / "clips";
    fs::create_directories(in.root / "run");
    fs::permissions(in.root / "run", fs::perms::owner_all);
    ::setenv("XDG_RUNTIME_DIR", (in.root / "run").c_str(), 1);
    ::setenv("QT_QPA_PLATFORM", "offscreen", 1);
    fs::create_directories(configs);
    fs::create_directories(logs);
    fs::create_directories(in.folder / "videos");
    // The manager and the stream program only: no service.
    for (const char* name : {"vexlane", "vxVideoStream", "images"}) {
        std::error_code ec;
        if (fs::exists(fs::path(VEXLANE_BIN_DIR) / name))
            fs::copy(fs::path(VEXLANE_BIN_DIR) / name, in.folder / name, fs::copy_options::recursive, ec);
    }
    if (!runTool({VEXLANE_DEMO_TOOL, clips.string(), "160", "120", "2"}) || !fs::exists(clips / "parking.avi")) {
        std::fprintf(stderr, "the clip could not be made\n");
        return false;
    }
    const std::string configDirectory = configs.string();
    config::RecognitionSrvConfig recognition;
    recognition.port = freeLoopbackPort();
    config::ControlSrvConfig control;
    control.port = freeLoopbackPort();
    config::MessengersConfig messengers;
    messengers.port = freeLoopbackPort();
    if (recognition.port <= 0 || control.port <= 0 || messengers.port <= 0)
        return false;
    config::saveRecogGlobal(configDirectory, recognition);
    config::saveControlGlobal(configDirectory, control);
    config::saveMessengers(configDirectory, messengers);
    // IDs of their own: a stream's shared block is named by its ID machine-wide.
    const std::int32_t base = 500000 + static_cast<std::int32_t>(::getpid() % 10000) * 100;
    std::string list, flags;
    for (int i = 0; i < streams; ++i) {
        const std::int32_t id = base + i;
        config::CameraConfig camera;
        camera.common.ID = id;
        camera.common.videoName = "Bench" + std::to_string(id);
        camera.common.videoPath = (clips / "parking.avi").string();
        camera.common.fps = 2.0f;
        config::saveCamera(config::cameraFilePath(configDirectory, id), camera, recognition.port, control.port);
        list += (i ? ",\"" : "\"") + config::cameraFileName(id) + "\"";
        flags += i ? ",true" : "true";
        in.ids.push_back(id);
    }
    write(configs / "vx_main_config.json",
          "{\"systemLogPath\":\"" + logs.string() + "\",\"recogLogPath\":\"" + logs.string() + "\",\"videoPath\":\"" +
              (in.folder / "videos").string() +
              "\",\"systemLevel\":3,\"startStatus\":true,\"globalRestart\":true,\"videoStreams\":[" + list +
              "],\"autoRunStreams\":[" + flags + "]}");
    return true;
}

// Blocks left by streams ended by force.
void removeBlocks(const Installation& in)
{
    std::error_code ec;
    for (std::int32_t id : in.ids)
        fs::remove(fs::path("/dev/shm") / supervision::sharedBlockName(static_cast<std::uint32_t>(id)), ec);
}

struct CpuFigures {
    bool ready = false;
    int running = 0;   // stream processes seen at the end of the wait
    double share = 0, streamShare = 0, seconds = 0, cpuSeconds = 0, systemSeconds = 0, memoryMb = -1;
};

CpuFigures measureManager(const Installation& in, int streams)
{
    CpuFigures f;
    pid_t manager = 0;
    const std::string program = (in.folder / "vexlane").string();
    char* managerArgv[] = {const_cast<char*>(program.c_str()), nullptr};
    if (posix_spawn(&manager, program.c_str(), nullptr, nullptr, managerArgv, environ) != 0) {
        std::fprintf(stderr, "vexlane can't be started\n");
        return f;
    }
    std::printf("part one: the real vexlane, waiting for %d streams (each start is watched 5 s)...\n", streams);
    std::fflush(stdout);
    // Each start may hold the watch five seconds, plus a margin.
    const auto bound = Clock::now() + std::chrono::seconds(30 + 7 * streams);
    while (!f.ready && Clock::now() < bound) {
        std::this_thread::sleep_for(std::chrono::milliseconds(500));
        f.running = static_cast<int>(processesOf(in.folder).size()) - 1;   // the streams and the manager
        f.ready = f.running >= streams;
    }
    // Settle: the last start's watch ends, the pictures flow.
    std::this_thread::sleep_for(std::chrono::seconds(6));
    std::vector<long> children;
    for (long pid : processesOf(in.folder))
        if (pid != manager)
            children.push_back(pid);
    std::vector<long long> childrenBefore;
    for (long pid : children)
        childrenBefore.push_back(cpuTicks(pid));
    long long systemBefore = 0, systemAfter = 0;
    const long long before = cpuTicks(manager, &systemBefore);
    const auto start = Clock::now();
    std::this_thread::sleep_for(std::chrono::seconds(measuredTicks));
    const long long after = cpuTicks(manager, &systemAfter);
    long long childTicks = 0;
    int counted = 0;
    for (std::size_t i = 0; i < children.size(); ++i) {
        const long long now = cpuTicks(children[i]);
        if (now >= 0 && childrenBefore[i] >= 0) {
            childTicks += now - childrenBefore[i];
            ++counted;
        }
    }
    f.memoryMb = residentMb(manager);
    f.seconds = std::chrono::duration<double>(Clock::now() - start).count();
    const auto hz = static_cast<double>(::sysconf(_SC_CLK_TCK));
    f.cpuSeconds = static_cast<double>(after - before) / hz;
    f.systemSeconds = static_cast<double>(systemAfter - systemBefore) / hz;
    f.share = 100.0 * f.cpuSeconds / f.seconds;
    f.streamShare = counted ? 100.0 * static_cast<double>(childTicks) / counted / hz / f.seconds : 0.0;

    ::kill(manager, SIGTERM);
    int status = 0;
    bool ended = false;
    for (int i = 0; i < 100 && !ended; ++i) {
        ended = ::waitpid(manager, &status, WNOHANG) == manager;
        if (!ended)
            std::this_thread::sleep_for(std::chrono::milliseconds(100));
    }
    if (!ended) {
        ::kill(manager, SIGKILL);
        ::waitpid(manager, &status, 0);
    }
    endProcessesOf(in.folder, 0);
    removeBlocks(in);
    return f;
}

struct Punctuality {
    bool ready = false;
    int ticks = 0;
    double maxLateMs = 0, p99LateMs = 0, meanLateMs = 0, maxPassMs = 0;
};

// The core in this process; see the file's head.
Punctuality measureTicks(const Installation& in, int streams)
{
    Punctuality p;
    auto state = std::make_unique<core::AppState>();
    state->baseDirectory = in.folder;
    core::StartupHooks startup;
    startup.showMessage = [](const std::string& title, const std::string& text) {
        std::printf("message: %s: %s\n", config::cp1251ToUtf8(title).c_str(), config::cp1251ToUtf8(text).c_str());
    };
    if (!core::runConfigSteps(*state, startup) || state->streams.size() != streams) {
        std::printf("the installation did not load\n");
        maintenance::setSystemLog(nullptr);
        return p;
    }
    auto services = supervision::makeServiceContext(*state);
    services->startWatchMs = 100;
    core::initServiceClients(*services);
    auto control = supervision::makeStreamControl(*state);
    control->startWatchMs = 100;
    auto endpoint = platform::createWindowEndpoint("Vexlane", "Vexlane tick bench");
    if (!endpoint) {
        maintenance::setSystemLog(nullptr);
        return p;
    }
    core::StreamTable* table = &state->streams;
    auto now = [] { return core::calendarSeconds(); };
    endpoint->onCopyData = [table, now](const platform::CopyDataMessage& message) {
        return supervision::onCopyData(*table, message, now);
    };

    // What the timer thread saw: when its wait last returned, and each
    // pass's start and end.
    struct Seen {
        std::mutex lock;
        Clock::time_point lastWake{};
        std::vector<std::pair<Clock::time_point, Clock::time_point>> passes;
        Clock::time_point passStart{};
    };
    auto seen = std::make_shared<Seen>();
    core::TimerHooks hooks =
        core::timerHooks(*state, services, control, std::make_shared<liveview::LiveView>(), endpoint->handle(), nullptr);
    hooks.sleep = [seen](int ms) {
        std::this_thread::sleep_for(std::chrono::milliseconds(ms));
        std::lock_guard<std::mutex> lock(seen->lock);
        seen->lastWake = Clock::now();
    };
    // updateCamera is the first hook of every pass but the 11th tick's
    // quota run, which comes before it; the pass began at the last wake.
    hooks.updateCamera = [seen, update = hooks.updateCamera] {
        {
            std::lock_guard<std::mutex> lock(seen->lock);
            seen->passStart = seen->lastWake;
        }
        update();
    };
    hooks.watch = [seen, watch = hooks.watch] {
        watch();
        std::lock_guard<std::mutex> lock(seen->lock);
        seen->passes.emplace_back(seen->passStart, Clock::now());
    };
    core::AppState* s = state.get();
    std::thread timer([s, hooks] { core::runTimerThread(*s, hooks); });

    std::printf("part two: the core in this process, waiting for %d streams...\n", streams);
    std::fflush(stdout);
    std::vector<Clock::time_point> marks;
    auto origin = Clock::now();
    int tick = 0;
    auto runTick = [&] {
        const auto scheduled = origin + std::chrono::milliseconds(periodMs) * tick++;
        for (auto left = scheduled - Clock::now(); left > Clock::duration::zero(); left = scheduled - Clock::now())
            endpoint->dispatchOne(static_cast<int>(std::chrono::ceil<std::chrono::milliseconds>(left).count()));
        core::onTimer(*s);
        marks.push_back(scheduled);
    };
    const auto bound = Clock::now() + std::chrono::seconds(60 + streams);
    while (!p.ready && Clock::now() < bound) {
        runTick();
        int running = 0;
        for (int i = 0; i < state->streams.size(); ++i)
            running += state->streams.record(i).hasImage ? 1 : 0;
        p.ready = running == streams;
    }
    // Settle, then measure from a fresh schedule.
    for (int i = 0; i < 3; ++i)
        runTick();
    std::size_t firstPass = 0;
    {
        std::lock_guard<std::mutex> lock(seen->lock);
        firstPass = seen->passes.size();
    }
    const std::size_t firstMark = marks.size();
    for (int i = 0; i < measuredTicks + 1; ++i)
        runTick();
    runTick();   // the last measured tick's pass ends before this mark
    std::vector<std::pair<Clock::time_point, Clock::time_point>> passes;
    {
        std::lock_guard<std::mutex> lock(seen->lock);
        passes.assign(seen->passes.begin() + static_cast<std::ptrdiff_t>(firstPass), seen->passes.end());
    }
    // Each measured tick is served by the first pass that starts at or
    // after its mark.
    std::vector<double> late;
    for (std::size_t m = firstMark; m + 1 < marks.size(); ++m) {
        const auto served = std::find_if(passes.begin(), passes.end(),
                                         [&](const auto& pass) { return pass.first >= marks[m]; });
        if (served == passes.end())
            break;
        late.push_back(std::chrono::duration<double, std::milli>(served->first - marks[m]).count());
    }
    for (const auto& pass : passes)
        p.maxPassMs = std::max(p.maxPassMs, std::chrono::duration<double, std::milli>(pass.second - pass.first).count());
    p.ticks = static_cast<int>(late.size());
    if (!late.empty()) {
        std::sort(late.begin(), late.end());
        p.maxLateMs = late.back();
        p.p99LateMs = late[std::min(late.size() - 1, static_cast<std::size_t>(0.99 * static_cast<double>(late.size())))];
        double sum = 0;
        for (double l : late)
            sum += l;
        p.meanLateMs = sum / static_cast<double>(late.size());
    }

    // The tick first, so that nothing starts the streams again.
    state->shuttingDown = true;
    state->tickPending = true;
    timer.join();
    endProcessesOf(in.folder, ::getpid());
    supervision::stopClients(services->clients);
    // Requests stuck on a stream that is gone end by their own time-out.
    supervision::requestTasks().waitAll();
    endpoint.reset();
    maintenance::setSystemLog(nullptr);
    removeBlocks(in);
    // The streams ended here were this process's children.
    for (int i = 0; i < 20; ++i) {
        while (::waitpid(-1, nullptr, WNOHANG) > 0) {
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
    return p;
}

} // namespace

int main(int argc, char** argv)
{
    const int streams = std::clamp(argc > 1 ? std::atoi(argv[1]) : 16, 1, 100);
    printLoad("at the start");
    Installation in;
    if (!install(in, streams)) {
        std::error_code ec;
        fs::remove_all(in.root, ec);
        return 2;
    }
    const CpuFigures cpu = measureManager(in, streams);
    std::printf("streams started: %d of %d (the log at its usual level 3)\n", std::max(cpu.running, 0), streams);
    std::printf("manager CPU at %d streams: %.3f s over %.1f s = %.2f ms per tick, %.2f%% of one core "
                "(target %s); reference one stream process %.2f%%; ratio %.2f\n",
                streams, cpu.cpuSeconds, cpu.seconds, 1000.0 * cpu.cpuSeconds / cpu.seconds, cpu.share,
                streams > 16 ? "<= 5% at 100" : "<= 1% at 16", cpu.streamShare,
                cpu.streamShare > 0 ? cpu.share / cpu.streamShare : 0.0);
    std::printf("of which in the kernel: %.3f s (reading /proc, sockets, the shared blocks)\n", cpu.systemSeconds);
    std::printf("manager resident memory: %.1f MB (target <= 150 MB at 100)\n", cpu.memoryMb);
    std::fflush(stdout);

    const Punctuality ticks = measureTicks(in, streams);
    std::printf("tick lateness at %d streams over %d ticks (period %d ms): max %.1f ms, p99 %.1f ms, mean %.1f ms; "
                "longest pass %.1f ms (target: max <= 200 ms at 100)%s\n",
                streams, ticks.ticks, periodMs, ticks.maxLateMs, ticks.p99LateMs, ticks.meanLateMs, ticks.maxPassMs,
                ticks.ready ? "" : "; not every stream answered");
    printLoad("at the end");

    std::error_code ec;
    fs::remove_all(in.root, ec);
    const bool met = cpu.ready && ticks.ready && ticks.ticks >= measuredTicks &&
                     cpu.share <= (streams > 16 ? 5.0 : 1.0) && (streams <= 16 || cpu.memoryMb <= 150.0) &&
                     ticks.maxLateMs <= 200.0;
    return met ? 0 : 1;
}
