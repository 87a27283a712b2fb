#include "ui/win32/stream_window.h"

#include <uxtheme.h>

#include "dialogs/stream_form.h"
#include "ui/win32/camera_discovery_windows.h"
#include "ui/win32/form_dialog.h"
#include "ui/win32/message_boxes.h"
#include "ui/win32/resource_ids.h"
#include "ui/win32/stream_window_ids.h"

namespace vx::ui::win32 {

namespace {

void bindStreamForm(FormBinding& b, dialogs::StreamForm& form)
{
    b.bindText(IDC_STREAM_PATH, form.videoPath);
    b.bindButton(IDC_STREAM_FIND, form.findCamera);
    b.bindText(IDC_STREAM_NAME, form.videoName);
    b.bindInteger(IDC_STREAM_WIDTH, form.width);
    b.bindInteger(IDC_STREAM_HEIGHT, form.height);
    b.bindReal(IDC_STREAM_FPS, form.fps);
    b.bindCheck(IDC_STREAM_RECONNECT, form.reconnect);
    b.bindInteger(IDC_STREAM_SECONDS, form.secondsToReconnect);
    b.bindInteger(IDC_STREAM_ATTEMPTS, form.attempts);
    b.bindCheck(IDC_STREAM_UNSHOW_VIDEO, form.unShowVideo);
    b.bindCheck(IDC_STREAM_SHOW_CONSOLE, form.showConsole);
    b.bindCheck(IDC_STREAM_ASPECT, form.aspect);
    b.bindCheck(IDC_STREAM_ONLY_VIDEO, form.onlyVideoStream);
    b.bindCheck(IDC_STREAM_WRITE_VIDEO, form.writeVideo);
    b.bindCheck(IDC_STREAM_WRITE_ONLY_OBJECTS, form.writeOnlyNumObj);
    b.bindCheck(IDC_STREAM_WRITE_TRANSPORT, form.writeTransport);
    b.bindCheck(IDC_STREAM_WRITE_PERSON, form.writePerson);
    b.bindInteger(IDC_STREAM_CHUNK, form.videoChunk);
    b.bindInteger(IDC_STREAM_WIDTH_WRITE, form.widthWrite);
    b.bindInteger(IDC_STREAM_HEIGHT_WRITE, form.heightWrite);
    b.bindCheck(IDC_STREAM_TCP, form.tcp);
    b.bindCheck(IDC_STREAM_NVIDIA, form.decodeNvidia);
    b.bindCheck(IDC_STREAM_DIRECTX, form.decodeDirectX);
    // The warning's text in blue: a themed check box draws its own colours.
    ::SetWindowTheme(b.control(IDC_STREAM_ONLY_VIDEO), L"", L"");
}

// The warning's blue text on the dialog's ground.
bool colourWarning(FormBinding& b, UINT message, WPARAM wParam, LPARAM lParam, INT_PTR& result)
{
    if (message != WM_CTLCOLORSTATIC || reinterpret_cast<HWND>(lParam) != b.control(IDC_STREAM_ONLY_VIDEO))
        return false;
    HDC dc = reinterpret_cast<HDC>(wParam);
    ::SetTextColor(dc, RGB(0, 0, 255));
    ::SetBkMode(dc, TRANSPARENT);
    result = reinterpret_cast<INT_PTR>(::GetSysColorBrush(COLOR_BTNFACE));
    return true;
}

} // namespace

bool runStreamDialog(HWND owner, core::AppState& state)
{
    Win32Messages messages(owner);
    dialogs::StreamForm form(state.scratchConfig, state.scratchConfig.isNew, messages);
    const std::filesystem::path toolFolder = state.baseDirectory;
    FormDialog dialog;
    dialog.resource = IDD_STREAM;
    dialog.title = form.title();
    dialog.bind = [&form, toolFolder](FormBinding& b) {
        bindStreamForm(b, form);
        HWND window = b.dialog();
        form.findLink = [window, toolFolder] { return runCameraDiscovery(window, toolFolder); };
    };
    dialog.other = colourWarning;
    return runFormDialog(owner, form, dialog) == IDOK;
}

} // namespace vx::ui::win32
