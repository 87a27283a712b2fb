#include "ui/win32/signal_window.h"

#include "config/white_list.h"
#include "dialogs/signal_form.h"
#include "ui/win32/form_dialog.h"
#include "ui/win32/message_boxes.h"
#include "ui/win32/resource_ids.h"
#include "ui/win32/signal_window_ids.h"
#include "ui/win32/white_list_windows.h"

namespace vx::ui::win32 {

namespace {

void bindSignalForm(FormBinding& b, dialogs::SignalForm& form)
{
    b.bindText(IDC_SIGNAL_NAME, form.name);
    b.bindChoice({IDC_SIGNAL_TO_ALL, IDC_SIGNAL_TO_WHITE_LIST, IDC_SIGNAL_EXCEPT_WHITE_LIST}, form.policy);
    b.bindList(IDC_SIGNAL_WHITE_LIST, form.whiteList);
    b.bindButton(IDC_SIGNAL_CHANGE_LISTS, form.changeWhiteLists);
    b.bindChoice({IDC_SIGNAL_OPENS, IDC_SIGNAL_CLOSES}, form.signalType);
    b.bindInteger(IDC_SIGNAL_CLOSE_DELAY, form.timeOutClose);
    b.bindCheck(IDC_SIGNAL_NOT_SEND_CLOSE, form.notSendClose);
    b.bindList(IDC_SIGNAL_RECEIVERS, form.receivers);
    b.bindButton(IDC_SIGNAL_APPLY_RECEIVER, form.applyReceiver);
    b.bindList(IDC_SIGNAL_REQUEST_TYPE, form.requestType);
    b.bindText(IDC_SIGNAL_URL, form.url);
    b.bindText(IDC_SIGNAL_BODY, form.body);
    b.bindList(IDC_SIGNAL_CONTENT_TYPE, form.contentType);
    b.bindCheck(IDC_SIGNAL_IMAGE, form.image);
    b.bindCheck(IDC_SIGNAL_SMALL_IMAGE, form.smallImage);
    b.bindCheck(IDC_SIGNAL_PLATE_IMAGE, form.plateImage);
    b.bindCheck(IDC_SIGNAL_CAR_IMAGE, form.carImage);
    b.bindInteger(IDC_SIGNAL_WAIT, form.timeOutSend);
    b.bindList(IDC_SIGNAL_ENCODING, form.bodyEncoding);
    b.bindInteger(IDC_SIGNAL_PAUSE, form.minTimeOutBWSignals);
    b.bindList(IDC_SIGNAL_CONDITIONS, form.conditions);
    b.bindCheck(IDC_SIGNAL_ALL_SIGNALS, form.allSignals);
}

} // namespace

bool runSignalDialog(HWND owner, core::AppState& state, config::SignalConfig& working)
{
    Win32Messages messages(owner);
    // The manager opens over this dialog, known once it stands.
    HWND window = nullptr;
    dialogs::SignalForm form(working, state.receiverSamples, config::whiteListTable(), messages,
                             [&window, &state] { runWhiteListManager(window, state); });
    FormDialog dialog;
    dialog.resource = IDD_SIGNAL;
    dialog.title = form.title();
    dialog.bind = [&form, &window](FormBinding& b) {
        bindSignalForm(b, form);
        window = b.dialog();
    };
    return runFormDialog(owner, form, dialog) == IDOK;
}

} // namespace vx::ui::win32
