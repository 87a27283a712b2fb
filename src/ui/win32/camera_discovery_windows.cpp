#include "ui/win32/camera_discovery_windows.h"

#include <commctrl.h>

#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>

#include "core/discovery_tool.h"
#include "dialogs/camera_discovery_flow.h"
#include "dialogs/camera_link_form.h"
#include "dialogs/camera_scan_form.h"
#include "ui/win32/camera_discovery_windows_ids.h"
#include "ui/win32/form_dialog.h"
#include "ui/win32/message_boxes.h"
#include "ui/win32/resource_ids.h"

namespace vx::ui::win32 {

namespace {

// Posted to the dialog when its call has ended.
constexpr UINT callEndedMessage = WM_APP + 17;
constexpr UINT_PTR barTimer = 1;
constexpr UINT barStepMs = 80;

// Where a call's thread leaves its outcome: the dialog that waits for it,
// cleared when the dialog goes, so that a late call posts nowhere.
template <class Outcome>
struct CallEnd {
    std::mutex mutex;
    HWND dialog = nullptr;
    std::optional<Outcome> outcome;

    void watch(HWND window)
    {
        std::lock_guard lock(mutex);
        dialog = window;
    }
    std::optional<Outcome> take()
    {
        std::lock_guard lock(mutex);
        return std::exchange(outcome, std::nullopt);
    }
};

template <class Outcome, class Work>
void startCall(const std::shared_ptr<CallEnd<Outcome>>& end, Work work)
{
    std::thread([end, work = std::move(work)] {
        Outcome outcome = work();
        std::lock_guard lock(end->mutex);
        if (!end->dialog)
            return;
        end->outcome = std::move(outcome);
        ::PostMessageW(end->dialog, callEndedMessage, 0, 0);
    }).detach();
}

// A moving bar steps round on the dialog's timer; a still one stands empty.
void setBarMoving(HWND dialog, int bar, bool moving)
{
    HWND control = ::GetDlgItem(dialog, bar);
    ::SendMessageW(control, PBM_SETRANGE32, 0, 100);
    ::SendMessageW(control, PBM_SETSTEP, 5, 0);
    if (moving) {
        ::SetTimer(dialog, barTimer, barStepMs, nullptr);
    } else {
        ::KillTimer(dialog, barTimer);
        ::SendMessageW(control, PBM_SETPOS, 0, 0);
    }
}

void stepBar(HWND dialog, int bar) { ::SendMessageW(::GetDlgItem(dialog, bar), PBM_STEPIT, 0, 0); }

void registerBars()
{
    static const bool registered = [] {
        INITCOMMONCONTROLSEX controls{sizeof(INITCOMMONCONTROLSEX), ICC_PROGRESS_CLASS};
        return ::InitCommonControlsEx(&controls) != FALSE;
    }();
    (void)registered;
}

// The scan dialog.
struct Scan {
    dialogs::ToolCall call;
    dialogs::CameraScanForm form;
    std::shared_ptr<CallEnd<dialogs::ScanOutcome>> end = std::make_shared<CallEnd<dialogs::ScanOutcome>>();
};

INT_PTR CALLBACK scanProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_INITDIALOG) {
        auto* scan = reinterpret_cast<Scan*>(lParam);
        ::SetWindowLongPtrW(window, DWLP_USER, lParam);
        setBarMoving(window, IDC_CAMERA_SCAN_BAR, true);
        scan->end->watch(window);
        startCall(scan->end, [call = scan->call, flag = scan->form.cancelFlag()] {
            return dialogs::runScanCall(call, *flag);
        });
        return TRUE;
    }
    auto* scan = reinterpret_cast<Scan*>(::GetWindowLongPtrW(window, DWLP_USER));
    if (!scan)
        return FALSE;
    switch (message) {
    case WM_TIMER:
        stepBar(window, IDC_CAMERA_SCAN_BAR);
        return TRUE;
    case callEndedMessage:
        if (auto outcome = scan->end->take()) {
            scan->form.finish(*outcome);
            ::EndDialog(window, scan->form.end() == dialogs::DiscoveryEnd::ok ? IDOK : IDCANCEL);
        }
        return TRUE;
    case WM_COMMAND:
        if (LOWORD(wParam) == IDCANCEL) {
            scan->form.pressCancel();
            ::EndDialog(window, IDCANCEL);
            return TRUE;
        }
        return FALSE;
    case WM_DESTROY:
        ::KillTimer(window, barTimer);
        scan->end->watch(nullptr);
        return FALSE;
    default:
        return FALSE;
    }
}

// The link form's failure shows over the link dialog, which it leaves open.
class DialogMessages : public dialogs::Messages {
public:
    bool show(const dialogs::Message& box) override { return Win32Messages(owner).show(box); }
    HWND owner = nullptr;
};

} // namespace

std::string runCameraScanDialog(HWND owner, const dialogs::ToolCall& call)
{
    registerBars();
    Scan scan{call, {}};
    ::DialogBoxParamW(programInstance(), MAKEINTRESOURCEW(IDD_CAMERA_SCAN), owner, scanProcedure,
                      reinterpret_cast<LPARAM>(&scan));
    scan.end->watch(nullptr);
    return scan.form.output();
}

std::optional<std::string> runCameraLinkDialog(HWND owner, const std::vector<dialogs::FoundCamera>& cameras,
                                               const dialogs::ToolCall& call)
{
    registerBars();
    DialogMessages messages;
    messages.owner = owner;
    dialogs::CameraLinkForm form(cameras, messages);
    const auto end = std::make_shared<CallEnd<dialogs::LinkOutcome>>();
    FormDialog dialog;
    dialog.resource = IDD_CAMERA_LINK;
    dialog.bind = [&](FormBinding& b) {
        HWND window = b.dialog();
        messages.owner = window;
        end->watch(window);
        b.bindList(IDC_CAMERA_LINK_LIST, form.cameras);
        b.bindLabel(IDC_CAMERA_LINK_PROMPT, form.prompt);
        b.bindText(IDC_CAMERA_LINK_LOGIN, form.login);
        b.bindText(IDC_CAMERA_LINK_PASSWORD, form.password);
        b.bindButton(IDOK, form.ok);
        b.bindButton(IDCANCEL, form.cancelButton);
        form.startCall = [&form, end, call, window](const dialogs::LinkRequest& request) {
            // The list waits with the buttons.
            form.cameras.enabled = false;
            setBarMoving(window, IDC_CAMERA_LINK_BAR, true);
            startCall(end, [request, call, flag = form.cancelFlag()] {
                return dialogs::runLinkCall(request, call, *flag);
            });
        };
    };
    dialog.other = [&form, end](FormBinding& b, UINT message, WPARAM, LPARAM, INT_PTR& result) {
        HWND window = b.dialog();
        if (message == WM_TIMER) {
            stepBar(window, IDC_CAMERA_LINK_BAR);
            result = TRUE;
            return true;
        }
        if (message == WM_DESTROY) {
            ::KillTimer(window, barTimer);
            end->watch(nullptr);
            return false;
        }
        if (message != callEndedMessage)
            return false;
        result = TRUE;
        const auto outcome = end->take();
        if (!outcome)
            return true;
        setBarMoving(window, IDC_CAMERA_LINK_BAR, false);
        form.finish(*outcome);
        form.cameras.enabled = form.ok.enabled;
        b.pull();
        if (form.end() == dialogs::DiscoveryEnd::ok)
            ::EndDialog(window, IDOK);
        else if (form.end() == dialogs::DiscoveryEnd::cancel)
            ::EndDialog(window, IDCANCEL);
        return true;
    };
    dialog.mayCancel = [&form] { return form.cancel(); };
    const INT_PTR result = runFormDialog(owner, form, dialog);
    end->watch(nullptr);
    if (result != IDOK || form.end() != dialogs::DiscoveryEnd::ok)
        return std::nullopt;
    return form.link();
}

std::optional<std::string> runCameraDiscovery(HWND owner, const dialogs::ToolCall& call,
                                              dialogs::Messages& messages)
{
    dialogs::DiscoveryDialogs dialogs;
    dialogs.scan = [&] { return runCameraScanDialog(owner, call); };
    dialogs.link = [&](const std::vector<dialogs::FoundCamera>& cameras) {
        return runCameraLinkDialog(owner, cameras, call);
    };
    return dialogs::findCameraLink(dialogs, messages);
}

std::optional<std::string> runCameraDiscovery(HWND owner, const std::filesystem::path& toolFolder)
{
    Win32Messages messages(owner);
    return runCameraDiscovery(owner, core::discoveryToolCall(toolFolder), messages);
}

} // namespace vx::ui::win32
