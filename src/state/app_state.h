#pragma once
// The process-wide state of the manager. Production code reaches it through
// appState(); tests build their own AppState and pass it by reference, so no
// test leaks state into another.
#include <atomic>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <future>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "config/control_config.h"
#include "config/main_config.h"
#include "config/camera_config.h"
#include "config/messenger_config.h"
#include "config/receiver_sample.h"
#include "config/recognition_config.h"
#include "state/stream_table.h"
#include "maintenance/video_archive.h"

namespace vx::core {

// The status bar text, cleared after a number of ticks.
class StatusText {
public:
    void set(const std::string& text);
    std::string get() const;
    // Counts one tick; clears the text once it has stood for `clearAfter`
    // ticks. Returns true when it was cleared on this tick.
    bool tick(int clearAfter = 21);
    // Called with each new text (also the cleared one), on the setting
    // thread: the window shows it. Set once, before other threads run.
    void setShown(std::function<void(const std::string&)> shown) { shown_ = std::move(shown); }
private:
    mutable std::mutex mutex_;
    std::string text_;
    int ticks_ = 0;
    std::function<void(const std::string&)> shown_;
};

// Handles of the asynchronous tasks started by the main thread. The main
// thread appends, the timer thread prunes the finished ones.
class PendingTasks {
public:
    void add(std::future<void> task);
    // Drops the finished tasks; returns how many are still running.
    int prune();
    int size() const;
    // Waits for every task (tests only; the manager itself never waits).
    void waitAll();
private:
    mutable std::mutex mutex_;
    std::vector<std::future<void>> tasks_;
};

// The common section a stream dialog edits; `isNew` marks a stream being added.
struct ScratchCommon : config::CameraCommon {
    bool isNew = false;
};

struct AppState {
    std::filesystem::path baseDirectory;   // the executable's folder, also the working directory
    std::string versionText;
    std::string ConfigDirectory;           // Windows-1251, baseDirectory + separator + "configs"
    std::string previousInstallPath;       // UTF-8, as path::string() gives it; see installPathOf
    bool migrateFolders = false;

    config::MainConfig liveMainConfig;     // the copy the manager works on and dialogs edit
    config::MainConfig storedMainConfig;   // the copy loadConfig fills and saveConfig writes
    config::MainConfigFolders mainConfigFolders;   // default folders, rebuilt by each loadConfig
    config::ControlSrvConfig controlConfig;        // vx_control_config.json
    config::RecognitionSrvConfig recognitionConfig;   // vx_recog_config_srv.json
    config::MessengersConfig messengersConfig;        // vx_mess_config.json
    // The copies the dialogs edit; the commands that open them copy back.
    config::RecognitionSrvConfig recognitionDialogCopy;
    config::MessengersConfig messengersDialogCopy;
    std::vector<config::ReceiverSample> receiverSamples;   // "Custom" first, then receiversamples.json
    config::CameraConfig workingCamera;   // the record loadCamera fills and saveCamera writes
    // The scratch set of the stream dialogs: filled before one opens, read
    // after it closes. The signals dialog sets reportRequested for a report
    // on demand.
    ScratchCommon scratchConfig;
    config::CameraRecognition scratchRecognition;
    config::CameraControl scratchControl;
    bool reportRequested = false;

    StreamTable streams;

    std::atomic<std::int32_t> restartControl{0};   // 10: the watch over dead processes is on
    std::atomic<bool> minimised{false};
    std::atomic<bool> createFinished{false};
    std::atomic<bool> shuttingDown{false};
    std::atomic<bool> tickPending{false};

    // What the service polls publish; -1 is "no answer".
    std::atomic<int> fpsRecognition{-1};
    std::atomic<int> statusControl{-1};
    std::atomic<int> statusMes{-1};

    StatusText status;
    PendingTasks pendingTasks;

    // The video archive quota; made at start-up, replaced when the settings
    // change. Both the replacing and every quota pass hold the mutex.
    std::mutex videoQuotaMutex;
    std::unique_ptr<maintenance::VideoArchive> videoQuota;
};

// The manager's own state, made on first use.
AppState& appState();

// Narrow (Windows-1251) text of a path, for building config paths.
std::string narrowPath(const std::filesystem::path& path);

// The folder previousInstallPath names. Built from UTF-8 code units: a
// path made from a plain string takes it in the ANSI code page on Windows,
// which turns a Cyrillic folder into question marks.
std::filesystem::path installPathOf(const std::string& utf8);

} // namespace vx::core
