// A soak of the watch over dead processes: one stream and one service of a
// temporary installation, started and watched by the manager's own code (the
// create handler's configuration steps, the start routines, the timer
// thread's tick with its watch, the stream channel), and killed with SIGKILL
// round after round. A round ends when both run again and a picture of the
// new stream process has reached the stream table; then this process's
// zombie children, open descriptors (/proc/self/fd) and resident memory
// (VmRSS) are counted, with the tick paused, the spawned requests done and
// the HTTP clients made anew (so that no keep-alive connection is counted).
//
//   soak [rounds] [--rss-limit-mb N] [--default-malloc] [--verbose]
//
// 1000 rounds by default. Exit code 0 when no zombie is left at the end, and
// since the first start the descriptors did not grow and the resident memory
// grew by less than N MB (5; 0 leaves memory unjudged, as the sanitized
// builds do: their allocator holds freed memory back on purpose); 1 when one
// of these failed, 2 when a round did not come back within its bound (scaled
// by VEXLANE_TEST_TIME_SCALE) or the installation couldn't be set up.
//
// The allocator's mmap threshold is fixed at its initial 128 KiB unless
// --default-malloc is given. By default glibc raises it to the size of each
// large block freed, after which the pictures of every tick (a 900 kB zone,
// tiles, decoded frames) come from the heap, whose fragments make the
// resident size wander by a zone at a time and settle some megabytes higher
// over the first few hundred rounds. With the threshold fixed they are
// mapped and unmapped, and what stays resident is what the code keeps.
//
// The tick runs fast: the main thread here plays the window's part, calling
// onTimer every 25 ms and handling the streams' notifications in between,
// and each onTimer is one second of the calendar clock the tick and the
// notification handler are given. The start routines watch a new process
// for 100 ms instead of five seconds. The processes are real.
//
// The installation holds vxInference and vxVideoStream only: the watch's
// start of the control service fails on every tick (its executable is
// missing), the messenger service is off. Services are looked for among this
// installation's processes only, since the machine may run other copies.
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <malloc.h>
#include <condition_variable>
#include <mutex>
#include <memory>
#include <sstream>
#include <string>
#include <thread>
#include <unistd.h>
#include <vector>

#include "proc_figures.h"
#include "config/camera_config.h"
#include "config/control_config.h"
#include "config/messenger_config.h"
#include "config/recognition_config.h"
#include "config/text_codec.h"
#include "core/create_steps.h"
#include "core/service_wiring.h"
#include "core/timer_thread.h"
#include "maintenance/system_log.h"
#include "platform/process.h"
#include "platform/window_endpoint.h"
#include "supervision/stream_channel.h"
#include "supervision/service_test_support.h"
#include "supervision/service_watch.h"
#include "supervision/stream_control.h"
#include "support/posix/zombie_children.h"
#include "support/temp_dir.h"
#include "support/time_scale.h"

namespace fs = std::filesystem;
using namespace vx;
using bench::readText;

namespace {

constexpr int tickMs = 25;
constexpr int startWatchMs = 100;
constexpr int roundBoundMs = 30000;

void writeText(const fs::path& path, const std::string& text)
{
    std::ofstream(path, std::ios::binary) << text;
}

int openDescriptors()
{
    int count = 0;
    std::error_code ec;
    for (auto it = fs::directory_iterator("/proc/self/fd", ec); !ec && it != fs::directory_iterator(); it.increment(ec))
        ++count;
    return count - 1;   // the iterator's own
}

// A line of /proc/self/status as a number ("VmRSS:  1234 kB" gives 1234).
long statusValue(const std::string& key)
{
    std::istringstream in(readText("/proc/self/status"));
    for (std::string line; std::getline(in, line);)
        if (line.rfind(key + ":", 0) == 0)
            return std::atol(line.c_str() + key.size() + 1);
    return -1;
}

struct Figure {
    long start = 0, end = 0, max = 0;
    void first(long value) { start = end = max = value; }
    void next(long value)
    {
        end = value;
        max = std::max(max, value);
    }
};

struct Options {
    int rounds = 1000;
    long rssLimitKb = 5 * 1024;
    bool defaultMalloc = false;
    bool verbose = false;
};

bool parse(int argc, char** argv, Options& options)
{
    for (int i = 1; i < argc; ++i) {
        const std::string arg = argv[i];
        if (arg == "--verbose")
            options.verbose = true;
        else if (arg == "--default-malloc")
            options.defaultMalloc = true;
        else if (arg == "--rss-limit-mb" && i + 1 < argc)
            options.rssLimitKb = std::atol(argv[++i]) * 1024;
        else if (!arg.empty() && arg.find_first_not_of("0123456789") == std::string::npos)
            options.rounds = std::atoi(arg.c_str());
        else
            return false;
    }
    return options.rounds > 0;
}

// The manager's supervision on a temporary installation, the tick driven
// from here.
class Soak {
public:
    bool setUp();
    // Ticks until the stream and the service run and the stream's picture
    // newer than `since` (injected seconds) came from a window other than
    // `oldWindow`; false when the bound runs out.
    bool tickUntilBack(std::int64_t since, platform::WindowHandle oldWindow);
    // Waits for the timer thread to be between ticks and for every spawned
    // request to end, handling notifications meanwhile; false when the
    // requests didn't end within the round's bound.
    bool quiesce();
    long streamPid() { return supervision::findProcessByArg(*streams_, supervision::streamImageName(), firstArg_); }
    long servicePid() const { return test::findProcessIn(folder_, "vxInference"); }
    platform::WindowHandle streamWindow() { return state_->streams.record(0).channel.window; }
    std::int64_t now() const { return clock_->load(); }
    void tearDown();
    ~Soak() { tearDown(); }

private:
    void tick();

    test::RuntimeSandbox sandbox_;
    test::TempDir root_{"vexlane-soak-"};
    fs::path folder_;
    std::string firstArg_;
    std::int32_t id_ = 0;
    std::unique_ptr<core::AppState> state_ = std::make_unique<core::AppState>();
    std::shared_ptr<std::atomic<std::int64_t>> clock_ = std::make_shared<std::atomic<std::int64_t>>(1700000000);
    std::shared_ptr<supervision::ServiceContext> services_;
    std::shared_ptr<supervision::StreamControl> streams_;
    std::unique_ptr<platform::WindowEndpoint> endpoint_;
    std::atomic<long> idleLooks_{0};
    std::thread timer_;
    std::thread drainer_;
    std::mutex drainMutex_;
    std::condition_variable drainWake_;
    bool drainAsked_ = false;
    bool drainDone_ = false;
    bool drainEnd_ = false;
    bool down_ = false;
};

bool Soak::setUp()
{
    folder_ = root_.path() / "vexlane";
    const fs::path configs = folder_ / "configs";
    const fs::path logs = folder_ / "logs";
    fs::create_directories(configs);
    fs::create_directories(logs);
    fs::create_directories(folder_ / "videos");
    for (const char* program : {"vxInference", "vxVideoStream"})
        fs::copy_file(fs::path(VEXLANE_BIN_DIR) / program, folder_ / program);

    // An ID of its own: the stream's shared block is named by it machine-wide.
    const std::int32_t id = 700000 + static_cast<std::int32_t>(::getpid() % 10000) * 10;
    id_ = id;
    const std::string entry = config::cameraFileName(id);
    const std::string configDirectory = configs.string();
    config::RecognitionSrvConfig recognition;
    recognition.port = test::freeLoopbackPort();
    config::ControlSrvConfig control;
    control.port = test::freeLoopbackPort();
    config::MessengersConfig messengers;
    messengers.port = test::freeLoopbackPort();
    if (recognition.port <= 0 || control.port <= 0 || messengers.port <= 0)
        return false;
    config::saveRecogGlobal(configDirectory, recognition);
    config::saveControlGlobal(configDirectory, control);
    config::saveMessengers(configDirectory, messengers);
    config::CameraConfig camera;
    camera.common.ID = id;
    camera.common.videoName = "Soak " + std::to_string(id);
    camera.common.videoPath = std::string(VEXLANE_BIN_DIR) + "/demo_videos/gate_entry.avi";
    config::saveCamera(config::cameraFilePath(configDirectory, id), camera, recognition.port, control.port);
    writeText(configs / "vx_main_config.json",
              "{\"systemLogPath\":\"" + logs.string() + "\",\"recogLogPath\":\"" + logs.string() +
                  "\",\"videoPath\":\"" + (folder_ / "videos").string() +
                  "\",\"systemLevel\":3,\"startStatus\":true,\"globalRestart\":true,\"videoStreams\":[\"" + entry +
                  "\"],\"autoRunStreams\":[true]}");
    firstArg_ = configDirectory + "/" + entry;

    // The create handler's steps, as the window runs them.
    core::AppState& state = *state_;
    state.baseDirectory = folder_;
    core::StartupHooks hooks;
    bool complained = false;
    hooks.showMessage = [&complained](const std::string& title, const std::string& text) {
        std::printf("message: %s: %s\n", config::cp1251ToUtf8(title).c_str(), config::cp1251ToUtf8(text).c_str());
        complained = true;
    };
    if (!core::runConfigSteps(state, hooks) || complained || state.streams.size() != 1 || state.restartControl != 10)
        return false;
    services_ = supervision::makeServiceContext(state);
    const fs::path folder = folder_;
    services_->process.find = [folder](const std::string& name) {
        return test::findProcessIn(folder, name.substr(0, name.size() - std::strlen(platform::executableSuffix)));
    };
    services_->startWatchMs = startWatchMs;
    core::initServiceClients(*services_);
    streams_ = supervision::makeStreamControl(state);
    streams_->startWatchMs = startWatchMs;

    endpoint_ = platform::createWindowEndpoint("Vexlane", "Vexlane soak");
    if (!endpoint_)
        return false;
    auto clock = clock_;
    auto now = [clock] { return clock->load(); };
    core::StreamTable* table = &state.streams;
    endpoint_->onCopyData = [table, now](const platform::CopyDataMessage& message) {
        return supervision::onCopyData(*table, message, now);
    };
    core::TimerHooks timerHooks = core::timerHooks(state, services_, streams_, std::make_shared<liveview::LiveView>(),
                                                   endpoint_->handle(), nullptr, now);
    timerHooks.sleep = [this, &state](int ms) {
        if (!state.tickPending)
            ++idleLooks_;
        std::this_thread::sleep_for(std::chrono::milliseconds(ms));
    };
    timer_ = std::thread([&state, timerHooks] { core::runTimerThread(state, timerHooks); });
    drainer_ = std::thread([this] {
        std::unique_lock<std::mutex> lock(drainMutex_);
        for (;;) {
            drainWake_.wait(lock, [this] { return drainAsked_ || drainEnd_; });
            if (drainEnd_)
                return;
            lock.unlock();
            supervision::requestTasks().waitAll();
            lock.lock();
            drainAsked_ = false;
            drainDone_ = true;
        }
    });
    return true;
}

void Soak::tick()
{
    core::onTimer(*state_);
    ++*clock_;
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(tickMs);
    for (auto left = tickMs; left > 0;
         left = static_cast<int>(std::chrono::ceil<std::chrono::milliseconds>(end - std::chrono::steady_clock::now()).count()))
        endpoint_->dispatchOne(left);
}

bool Soak::tickUntilBack(std::int64_t since, platform::WindowHandle oldWindow)
{
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(test::scaledMs(roundBoundMs));
    while (std::chrono::steady_clock::now() < end) {
        tick();
        // The picture first: the process lists cost more.
        const core::CameraRuntime record = state_->streams.record(0);
        if (record.hasImage && record.lastImageTime > since && record.channel.window != 0 &&
            record.channel.window != oldWindow && servicePid() != 0 && streamPid() != 0)
            return true;
    }
    return false;
}

bool Soak::quiesce()
{
    // Two looks at an unset tick mark: the pass that was running has ended.
    const long looks = idleLooks_;
    for (int i = 0; i < 500 && idleLooks_ < looks + 2; ++i)
        endpoint_->dispatchOne(5);
    // The wait runs on a thread of its own (made once, so that the counts
    // don't see a new thread's memory every round) while this one handles
    // the notifications the last image requests bring.
    {
        std::lock_guard<std::mutex> lock(drainMutex_);
        drainAsked_ = true;
        drainDone_ = false;
    }
    drainWake_.notify_all();
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(test::scaledMs(roundBoundMs));
    for (;;) {
        {
            std::lock_guard<std::mutex> lock(drainMutex_);
            if (drainDone_)
                break;
        }
        if (std::chrono::steady_clock::now() >= end)
            return false;
        endpoint_->dispatchOne(5);
    }
    // A notification sent just before may still wait.
    endpoint_->dispatchPending();
    // The recognition client may hold a keep-alive connection or not,
    // depending on how many polls its service took on it: the clients are
    // made anew, as a service's start does, so that none is counted.
    core::initServiceClients(*services_);
    return true;
}

void Soak::tearDown()
{
    if (down_ || !state_)
        return;
    down_ = true;
    // The tick first, so that nothing starts the processes again.
    if (timer_.joinable()) {
        state_->shuttingDown = true;
        state_->tickPending = true;
        timer_.join();
    }
    if (drainer_.joinable()) {
        {
            std::lock_guard<std::mutex> lock(drainMutex_);
            drainEnd_ = true;
        }
        drainWake_.notify_all();
        drainer_.join();
    }
    for (int i = 0; i < 20; ++i) {
        const long stream = streams_ ? streamPid() : 0;
        const long service = servicePid();
        if (stream == 0 && service == 0)
            break;
        platform::terminateProcess(stream);
        platform::terminateProcess(service);
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
    if (services_)
        supervision::stopClients(services_->clients);
    supervision::requestTasks().waitAll();
    endpoint_.reset();
    maintenance::setSystemLog(nullptr);
    // A stream ended by force leaves its block for the next one to take
    // over; none comes after the last.
    std::error_code ec;
    if (id_ != 0)
        fs::remove(fs::path("/dev/shm") / supervision::sharedBlockName(static_cast<std::uint32_t>(id_)), ec);
}

} // namespace

int main(int argc, char** argv)
{
    Options options;
    if (!parse(argc, argv, options)) {
        std::printf("usage: soak [rounds] [--rss-limit-mb N] [--default-malloc] [--verbose]\n");
        return 2;
    }
    if (!options.defaultMalloc)
        mallopt(M_MMAP_THRESHOLD, 128 * 1024);
    auto soak = std::make_unique<Soak>();
    if (!soak->setUp()) {
        std::printf("the installation could not be set up\n");
        return 2;
    }
    // The first start: the first tick's watch starts both.
    if (!soak->tickUntilBack(0, 0)) {
        std::printf("the stream and the service did not come up\n");
        return 2;
    }
    if (!soak->quiesce()) {
        std::printf("the spawned requests did not end\n");
        return 2;
    }
    Figure zombies, descriptors, rss, threads;
    zombies.first(test::zombieChildren());
    descriptors.first(openDescriptors());
    rss.first(statusValue("VmRSS"));
    threads.first(statusValue("Threads"));
    std::printf("first start: descriptors %ld, RSS %ld kB, threads %ld, zombies %ld\n", descriptors.start,
                rss.start, threads.start, zombies.start);
    std::fflush(stdout);

    const auto started = std::chrono::steady_clock::now();
    int done = 0;
    bool stuck = false;
    for (int round = 1; round <= options.rounds; ++round) {
        const long stream = soak->streamPid();
        const long service = soak->servicePid();
        const platform::WindowHandle window = soak->streamWindow();
        const std::int64_t killedAt = soak->now();
        platform::terminateProcess(stream);
        platform::terminateProcess(service);
        if (stream == 0 || service == 0 || !soak->tickUntilBack(killedAt, window)) {
            std::printf("round %d: the stream or the service did not come back (stream %ld, service %ld)\n", round,
                        soak->streamPid(), soak->servicePid());
            stuck = true;
            break;
        }
        if (!soak->quiesce()) {
            std::printf("round %d: the spawned requests did not end\n", round);
            stuck = true;
            break;
        }
        zombies.next(test::zombieChildren());
        descriptors.next(openDescriptors());
        threads.next(statusValue("Threads"));
        rss.next(statusValue("VmRSS"));
        done = round;
        if (options.verbose || round % 100 == 0) {
            std::printf("round %d: descriptors %ld, RSS %ld kB, threads %ld, zombies %ld\n", round, descriptors.end,
                        rss.end, threads.end, zombies.end);
            std::fflush(stdout);
        }
    }
    const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - started).count();
    soak->tearDown();
    // The last ones killed are reaped in the background: a bounded wait.
    long zombiesLeft = test::zombieChildren();
    for (int i = 0; i < 100 && zombiesLeft > 0; ++i) {
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        zombiesLeft = test::zombieChildren();
    }
    soak.reset();

    std::printf("rounds: %d in %.1f s, %.2f rounds/s\n", done, seconds, seconds > 0 ? done / seconds : 0.0);
    std::printf("descriptors: start %ld, end %ld, max %ld\n", descriptors.start, descriptors.end, descriptors.max);
    std::printf("RSS: start %ld kB, end %ld kB, max %ld kB (growth %ld kB)%s\n", rss.start, rss.end, rss.max,
                rss.end - rss.start, options.defaultMalloc ? ", default mmap threshold" : "");
    std::printf("threads: start %ld, end %ld, max %ld\n", threads.start, threads.end, threads.max);
    std::printf("zombies: after a round at most %ld; after the end %ld\n", zombies.max, zombiesLeft);
    bool failed = false;
    if (zombiesLeft > 0) {
        std::printf("FAIL: a zombie is left\n");
        failed = true;
    }
    if (descriptors.end > descriptors.start) {
        std::printf("FAIL: the open descriptors grew\n");
        failed = true;
    }
    if (options.rssLimitKb > 0 && rss.end - rss.start >= options.rssLimitKb) {
        std::printf("FAIL: the resident memory grew by %ld kB or more\n", options.rssLimitKb);
        failed = true;
    }
    if (stuck)
        return 2;
    return failed ? 1 : 0;
}
