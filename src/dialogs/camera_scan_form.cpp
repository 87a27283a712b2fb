#include "dialogs/camera_scan_form.h"

namespace vx::dialogs {

ScanOutcome runScanCall(const ToolCall& call, const std::atomic<bool>& cancelled)
{
    const ToolOutput run = call(scanCommandLine());
    if (!run.started || cancelled)
        return {DiscoveryEnd::cancel, {}};
    return {DiscoveryEnd::ok, run.text};
}

void CameraScanForm::pressCancel()
{
    if (end_ != DiscoveryEnd::open)
        return;
    *cancelled_ = true;
    end_ = DiscoveryEnd::cancel;
}

void CameraScanForm::finish(const ScanOutcome& outcome)
{
    if (end_ != DiscoveryEnd::open)
        return;
    end_ = outcome.end;
    output_ = outcome.end == DiscoveryEnd::ok ? outcome.output : std::string();
}

} // namespace vx::dialogs
