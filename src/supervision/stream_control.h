#pragma once
// Starting, stopping and finding the stream processes. The manager keeps no
// process handle: a stream process is known by its first argument (its
// camera file) while it is being looked for, and by its window afterwards.
//
// videoStart blocks its caller up to five seconds and videoStop one second:
// the callers run them on asynchronous tasks, never on the UI thread.
#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "config/main_config.h"
#include "state/stream_table.h"
#include "platform/process.h"
#include "platform/window_endpoint.h"

namespace vx::core {
struct AppState;
}

namespace vx::supervision {

// "vxVideoStream" and the platform's executable suffix.
std::string streamImageName();

// What a start reads at the moment it runs.
struct StreamSettings {
    config::MainConfig mainConfig;           // a copy, taken at the start of each videoStart
    std::string configDirectory;             // 1251, ConfigDirectory
    std::filesystem::path baseDirectory;     // working directory and first place to look
};

// One mutex per stream ID: a stream's start, stop and restart run one at a
// time, and the watch leaves a stream alone while one of them runs.
struct StreamLocks {
    std::mutex mutex;
    std::map<std::int32_t, std::shared_ptr<std::mutex>> byId;
    std::shared_ptr<std::mutex> of(std::int32_t id);
};

// The world the stream control works on; the defaults are the platform's.
// Tests put in their own launcher, process list and sleeps.
struct StreamControl {
    core::StreamTable* table = nullptr;
    std::function<StreamSettings()> settings = [] { return StreamSettings{}; };
    std::function<std::unique_ptr<platform::StartedProcess>(const platform::ProcessStartInfo&)> start =
        platform::startProcess;
    std::function<std::vector<platform::ProcessEntry>()> listProcesses = platform::listProcesses;
    std::function<std::string(long pid)> readCommandLine;   // readProcessCommandLine when unset
    std::function<long(platform::WindowHandle)> windowOwner = platform::windowOwnerPid;
    std::function<bool(long pid)> terminate = platform::terminateProcess;
    std::function<bool(platform::WindowHandle, std::string, int timeoutMs)> sendText;   // the channel's when unset
    std::function<void(int ms)> sleep;   // a real sleep unless a test sets it
    int startWatchMs = 5000;
    int stopWaitMs = 1000;
    // How long a stop waits for the stream's processes to be gone.
    int stopGoneMs = 5000;
    std::shared_ptr<StreamLocks> locks = std::make_shared<StreamLocks>();
};

// The stream's command line, 1251:
//   vxVideoStream "<configDirectory>/<entry>" "<videoPath>" "<systemLogPath><sep>vxVideoStreamLog<id>.txt"
std::string streamCommandLine(const std::string& configDirectory, const std::string& entry,
                              const std::string& videoPath, const std::string& systemLogPath, std::int32_t id);

// With id -1 the stream at position `index` of videoStreams; else the stream
// with that ID, `index` standing when the ID isn't in the table (callers that
// go by ID pass 100000). Blocks up to startWatchMs. A stream whose process
// already runs isn't started a second time.
void videoStart(StreamControl& control, std::int32_t index, std::int32_t id);
// "quit", a second's wait, then the owner of the window is ended if it is
// still there, and so is every other process of the stream, found by its
// command line.
void videoStop(StreamControl& control, std::int32_t index);
void videoRestart(StreamControl& control, std::int32_t index);

// The normal form two path arguments are compared in: surrounding quote
// pairs removed, blanks at both ends trimmed, "/" turned into "\". UTF-8.
std::string normalizeArg(const std::string& text);
// Compares two UTF-8 texts ignoring case (Latin and Cyrillic letters).
bool sameTextIgnoringCase(const std::string& a, const std::string& b);

// The first process, in list order, whose image name is `exeName`
// (case-sensitive) and whose second argument equals `firstArg` after
// normalizeArg, ignoring case; its pid or 0. UTF-8.
long findProcessByArg(StreamControl& control, const std::string& exeName, const std::string& firstArg);
// Every such process, in list order.
std::vector<long> findProcessesByArg(StreamControl& control, const std::string& exeName, const std::string& firstArg);

// The stream ID a videoStreams entry names: the digits after "stream", 0
// without digits, and 0xFFFFFFFF (-1) when there is no "stream" at all.
std::uint32_t streamIdFromEntry(const std::string& entry);

// Every entry of videoStreams flagged in autoRunStreams whose stream is in
// the table and whose process isn't found is started by
// videoStart(100000, id) on this thread, one after the other. Entries with
// no stream behind them (a file that didn't load) and streams with a start,
// stop or restart under way are left alone.
void restartMissingStreams(StreamControl& control);

// A control bound to the manager's state.
std::shared_ptr<StreamControl> makeStreamControl(core::AppState& state);

} // namespace vx::supervision
