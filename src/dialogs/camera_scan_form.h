#pragma once
// "Сканирование камер в локальной сети": a moving bar and "Отмена" while
// the scan call runs on a thread of its own. The call's end closes the
// dialog with OK and the output; a tool that doesn't start closes it with
// Cancel; "Отмена" raises the cancel flag and closes at once, and the call,
// ending later, finds the flag and discards what it read.
#include <atomic>
#include <memory>
#include <string>

#include "dialogs/camera_discovery.h"

namespace vx::dialogs {

enum class DiscoveryEnd { open, ok, cancel };

struct ScanOutcome {
    DiscoveryEnd end = DiscoveryEnd::cancel;
    std::string output;
};

// The thread's part: runs the tool, then reads the flag once.
ScanOutcome runScanCall(const ToolCall& call, const std::atomic<bool>& cancelled);

class CameraScanForm {
public:
    CameraScanForm() : cancelled_(std::make_shared<std::atomic<bool>>(false)) {}

    // The flag the thread reads; it outlives a dialog that closed at cancel.
    std::shared_ptr<std::atomic<bool>> cancelFlag() const { return cancelled_; }
    void pressCancel();
    // The thread's end; the dialog closes with `end()` unless it already has.
    void finish(const ScanOutcome& outcome);

    DiscoveryEnd end() const { return end_; }
    const std::string& output() const { return output_; }   // empty after a cancel

private:
    std::shared_ptr<std::atomic<bool>> cancelled_;
    DiscoveryEnd end_ = DiscoveryEnd::open;
    std::string output_;
};

} // namespace vx::dialogs
