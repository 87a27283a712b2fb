#include "manager_under_attack.h"

#include <arpa/inet.h>
#include <dlfcn.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <QApplication>
#include <QEventLoop>
#include <QPushButton>
#include <QTimer>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <mutex>
#include <thread>

#include "config/camera_config.h"
#include "config/control_config.h"
#include "config/messenger_config.h"
#include "config/recognition_config.h"
#include "config/text_codec.h"
#include "support/captured_stderr.h"
#include "ui/qt/main_window.h"
#include "ui/qt/qt_text.h"
#include "ui/qt/tile_view.h"

namespace vx::test::hostile {
namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

// What the sampler thread and the main thread share; the posted events hold
// it too, so one that runs late never meets a dead probe.
struct Samples {
    std::mutex mutex;
    std::vector<double> delaysMs;
};

// Posts an event to the main thread every 20 ms; each records how long it
// waited to run.
class LatencyProbe {
public:
    LatencyProbe()
    {
        thread_ = std::thread([this] {
            auto next = Clock::now();
            while (!stop_) {
                const auto posted = Clock::now();
                QMetaObject::invokeMethod(
                    QCoreApplication::instance(),
                    [samples = samples_, posted] {
                        const double ms = std::chrono::duration<double, std::milli>(Clock::now() - posted).count();
                        std::lock_guard<std::mutex> lock(samples->mutex);
                        samples->delaysMs.push_back(ms);
                    },
                    Qt::QueuedConnection);
                next += std::chrono::milliseconds(20);
                std::this_thread::sleep_until(next);
            }
        });
    }
    // Stops posting; the events still on their way are counted by the
    // caller's next turn of the event loop.
    void stop()
    {
        stop_ = true;
        if (thread_.joinable())
            thread_.join();
    }
    ~LatencyProbe() { stop(); }
    std::vector<double> delays() const
    {
        std::lock_guard<std::mutex> lock(samples_->mutex);
        return samples_->delaysMs;
    }

private:
    std::shared_ptr<Samples> samples_ = std::make_shared<Samples>();
    std::atomic<bool> stop_{false};
    std::thread thread_;
};

// The good stream's picture. A copy shares the pixels, so while the caller
// holds it a newer picture can't come to the same address.
imaging::Picture goodPicture(core::AppState& state, std::int32_t id)
{
    imaging::Picture picture;
    state.streams.withDrawLock([&](std::vector<core::CameraRuntime>& records) {
        for (const core::CameraRuntime& record : records)
            if (record.id == id)
                picture = record.image;
    });
    return picture;
}

// Resident memory of this process, KiB.
long residentKb()
{
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.rfind("VmRSS:", 0) == 0)
            return std::atol(line.c_str() + 6);
    return 0;
}

// A loopback port nothing listens on (bound once, then let go).
std::uint16_t closedPort()
{
    const int fd = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    std::uint16_t port = 0;
    if (fd >= 0 && ::bind(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0 &&
        ::getsockname(fd, reinterpret_cast<sockaddr*>(&address), &length) == 0)
        port = ntohs(address.sin_port);
    if (fd >= 0)
        ::close(fd);
    return port;
}

} // namespace

std::string Figures::line(const std::string& attack) const
{
    char text[256];
    std::snprintf(text, sizeof text,
                  "%-16s latency max %7.1f ms p99 %6.1f ms (%d samples)  RSS %ld -> %ld KiB (%+ld, peak %ld)  "
                  "zones %ld  good pictures %d  %.1f s",
                  attack.c_str(), maxMs, p99Ms, samples, rssBeforeKb, rssAfterKb, rssGrowthKb(), rssPeakKb,
                  zonesShown, goodPictures, seconds);
    return text;
}

long allocatorHoldKb()
{
    return ::dlsym(RTLD_DEFAULT, "__asan_init") ? 256 * 1024 : 0;
}

std::unique_ptr<ChildProcess> startPeer(const std::string& name, const std::vector<std::string>& arguments)
{
    return ChildProcess::start(fs::path(VEXLANE_PEER_DIR) / name, arguments);
}

ManagerUnderAttack::ManagerUnderAttack(ServicePorts ports) : base_("vexlane-hostile-"), ports_(ports)
{
    for (std::uint16_t* port : {&ports_.recognition, &ports_.control, &ports_.messengers})
        if (*port == 0)
            *port = closedPort();
    // IDs of their own, so two runs at once don't meet.
    goodId_ = 900000 + static_cast<std::int32_t>(::getpid() % 20000) * 4;
}

ManagerUnderAttack::~ManagerUnderAttack()
{
    if (window_ && !window_->tornDown())
        window_->teardown();
    window_.reset();
    goodStream_.reset();   // killed and reaped by pid
}

std::string ManagerUnderAttack::title(std::int32_t id) const
{
    return "Hostile site " + std::to_string(id);
}

std::string ManagerUnderAttack::servicePanel() const
{
    auto* panel = qobject_cast<QPushButton*>(window_->control(ui::idServicePanel));
    return panel ? panel->text().toStdString() : std::string();
}

void ManagerUnderAttack::writeInstallation()
{
    const fs::path configs = base_.path() / "configs";
    const fs::path logs = base_.path() / "logs";
    fs::create_directories(configs);
    fs::create_directories(logs);
    fs::create_directories(base_.path() / "videos");
    const std::string good = config::cameraFileName(goodId_);
    const std::string hostile = config::cameraFileName(hostileId());
    // Nothing is started by the manager itself (startStatus false); the
    // log keeps warnings only, so a flood doesn't turn into disk writes.
    writeFileBytes(configs / "vx_main_config.json",
                   "{\"systemLogPath\":\"" + logs.string() + "\",\"recogLogPath\":\"" + logs.string() +
                       "\",\"videoPath\":\"" + (base_.path() / "videos").string() +
                       "\",\"systemLevel\":3,\"startStatus\":false,\"videoStreams\":[\"" + good + "\",\"" + hostile +
                       "\"],\"autoRunStreams\":[false,false]}");
    for (std::int32_t id : {goodId_, hostileId()}) {
        config::CameraConfig camera;
        camera.common.ID = id;
        camera.common.videoName = title(id);
        camera.common.videoPath = std::string(VEXLANE_BIN_DIR) + "/demo_videos/gate_entry.avi";
        config::saveCamera(config::cameraFilePath(configs.string(), id), camera, ports_.recognition, ports_.control);
    }
    config::RecognitionSrvConfig recognition;
    recognition.port = ports_.recognition;
    config::saveRecogGlobal(configs.string(), recognition);
    config::ControlSrvConfig control;
    control.port = ports_.control;
    config::saveControlGlobal(configs.string(), control);
    config::MessengersConfig messengers;
    messengers.port = ports_.messengers;
    config::saveMessengers(configs.string(), messengers);
}

bool ManagerUnderAttack::start(int timeoutMs)
{
    writeInstallation();
    const fs::path configs = base_.path() / "configs";
    goodStream_ = ChildProcess::start(fs::path(VEXLANE_BIN_DIR) / "vxVideoStream",
                                      {config::cameraFilePath(configs.string(), goodId_),
                                       (base_.path() / "videos").string(),
                                       (base_.path() / "logs" / ("vxVideoStreamLog" + std::to_string(goodId_) + ".txt")).string()});
    if (!goodStream_)
        return false;

    state_ = new core::AppState;
    state_->baseDirectory = base_.path();
    state_->ConfigDirectory = configs.string();
    window_ = std::make_unique<ui::MainWindow>(*state_);
    window_->setTeardownPause(0);
    window_->setQuitAction([] {});
    if (!window_->create())
        return false;
    window_->resize(960, 640);
    window_->show();
    return runUntil([this] { return !goodPicture(*state_, goodId_).empty(); }, timeoutMs);
}

std::unique_ptr<ChildProcess> ManagerUnderAttack::startHostileStream(const std::string& mode, double seconds, int rate)
{
    auto peer = startPeer("hostile_stream", {mode, std::to_string(hostileId()), title(hostileId()),
                                             std::to_string(seconds), std::to_string(rate)});
    if (!peer || peer->readLine(10000) != "ready")
        return nullptr;
    return peer;
}

bool ManagerUnderAttack::runUntil(const std::function<bool()>& condition, int ms)
{
    const auto end = Clock::now() + std::chrono::milliseconds(ms);
    while (!condition()) {
        if (Clock::now() >= end)
            return false;
        QEventLoop loop;
        QTimer::singleShot(20, &loop, &QEventLoop::quit);
        loop.exec();
    }
    return true;
}

Figures ManagerUnderAttack::run(int ms, const std::function<bool()>& done)
{
    auto* area = qobject_cast<ui::TileView*>(window_->control(ui::idTileArea));
    Figures figures;
    figures.rssBeforeKb = residentKb();
    figures.rssPeakKb = figures.rssBeforeKb;
    const std::uint64_t serialBefore = area ? area->serial() : 0;
    imaging::Picture lastGood = goodPicture(*state_, goodId_);
    const auto start = Clock::now();

    QEventLoop loop;
    QTimer watch;
    watch.setInterval(50);
    QObject::connect(&watch, &QTimer::timeout, &loop, [&] {
        figures.rssPeakKb = std::max(figures.rssPeakKb, residentKb());
        imaging::Picture good = goodPicture(*state_, goodId_);
        if (good.data != lastGood.data) {
            lastGood = std::move(good);
            ++figures.goodPictures;
        }
        if (Clock::now() - start >= std::chrono::milliseconds(ms) || (done && done()))
            loop.quit();
    });
    LatencyProbe probe;
    watch.start();
    loop.exec();
    watch.stop();
    probe.stop();
    // The events posted last still come through.
    QEventLoop drain;
    QTimer::singleShot(50, &drain, &QEventLoop::quit);
    drain.exec();

    figures.seconds = std::chrono::duration<double>(Clock::now() - start).count();
    figures.rssAfterKb = residentKb();
    figures.zonesShown = area ? static_cast<long>(area->serial() - serialBefore) : 0;
    std::vector<double> delays = probe.delays();
    figures.samples = static_cast<int>(delays.size());
    if (!delays.empty()) {
        std::sort(delays.begin(), delays.end());
        figures.maxMs = delays.back();
        const std::size_t at = static_cast<std::size_t>(std::ceil(0.99 * static_cast<double>(delays.size()))) - 1;
        figures.p99Ms = delays[std::min(at, delays.size() - 1)];
    }
    return figures;
}

} // namespace vx::test::hostile
