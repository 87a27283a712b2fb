#pragma once
// The manager's real window and core in this process, on its real event
// loop, beside one good vxVideoStream and a slot for a hostile stream, with
// what it takes to watch it while a peer misbehaves: the delay of an event
// posted to the main thread every 20 ms, the zones the tile area gets, the
// good stream's pictures, and the resident memory. Shared by the tests and
// the benchmark tool; Linux only (the peers speak POSIX sockets).
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "state/app_state.h"
#include "support/child_process.h"
#include "support/temp_dir.h"

namespace vx::ui { class MainWindow; }

namespace vx::test::hostile {

struct Figures {
    int samples = 0;        // posted events that came through
    double maxMs = 0;       // the longest a posted event waited
    double p99Ms = 0;
    long rssBeforeKb = 0;
    long rssAfterKb = 0;
    long rssPeakKb = 0;
    long zonesShown = 0;    // tile zones the window took during the run
    int goodPictures = 0;   // new pictures stored for the good stream
    double seconds = 0;

    long rssGrowthKb() const { return rssAfterKb - rssBeforeKb; }
    // One line for the log and the tables: attack, latency, memory, drawing.
    std::string line(const std::string& attack) const;
};

// What the allocator may hold back on its own, KiB: AddressSanitizer keeps
// freed blocks in a quarantine of 256 MiB by default, so under it every
// picture decoded and dropped stays resident until that fills.
long allocatorHoldKb();

// The service ports the manager's configs name.
struct ServicePorts {
    std::uint16_t recognition = 0, control = 0, messengers = 0;
};

// A peer of tests/: a program built beside the test executables.
std::unique_ptr<ChildProcess> startPeer(const std::string& name, const std::vector<std::string>& arguments);

class ManagerUnderAttack {
public:
    // The ports default to closed ones. Needs the Qt application and a
    // RuntimeSandbox, both kept by the caller.
    explicit ManagerUnderAttack(ServicePorts ports = {});
    ~ManagerUnderAttack();
    ManagerUnderAttack(const ManagerUnderAttack&) = delete;
    ManagerUnderAttack& operator=(const ManagerUnderAttack&) = delete;

    // Writes the installation, starts the good stream and opens the window;
    // true once the good stream's first picture was stored (within timeoutMs).
    bool start(int timeoutMs);

    // Starts hostile_stream in `mode` under the second record's ID and
    // title; null when it didn't come up.
    std::unique_ptr<ChildProcess> startHostileStream(const std::string& mode, double seconds, int rate);

    // Runs the event loop for up to `ms`, measuring, and ends early once
    // `done` holds (checked every 50 ms on the main thread).
    Figures run(int ms, const std::function<bool()>& done = {});

    // Runs the event loop until `condition` holds or `ms` ran out.
    bool runUntil(const std::function<bool()>& condition, int ms);

    core::AppState& state() { return *state_; }
    std::int32_t hostileId() const { return goodId_ + 1; }
    // The service panel's text, as shown.
    std::string servicePanel() const;

private:
    std::string title(std::int32_t id) const;
    void writeInstallation();

    TempDir base_;
    ServicePorts ports_;
    std::int32_t goodId_ = 0;
    core::AppState* state_ = nullptr;   // outlives the window: its timer thread is detached
    std::unique_ptr<ui::MainWindow> window_;
    std::unique_ptr<ChildProcess> goodStream_;
};

} // namespace vx::test::hostile
