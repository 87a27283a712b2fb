#include "ui/win32/signals_reports_window.h"

#include <commctrl.h>

#include "dialogs/signals_reports_form.h"
#include "ui/win32/form_dialog.h"
#include "ui/win32/message_boxes.h"
#include "ui/win32/resource_ids.h"
#include "ui/win32/signal_window.h"
#include "ui/win32/signals_reports_window_ids.h"

namespace vx::ui::win32 {

namespace {

// The pickers show the day as "dd.MM.yyyy" and the time of day as
// "HH:mm:ss", whatever the system's locale says.
void formatPicker(FormBinding& b, int id, const wchar_t* format)
{
    ::SendMessageW(b.control(id), DTM_SETFORMATW, 0, reinterpret_cast<LPARAM>(format));
}

void bindSignalsReportsForm(FormBinding& b, dialogs::SignalsReportsForm& form)
{
    for (std::size_t slot = 0; slot < form.signalOn.size(); ++slot) {
        const int offset = static_cast<int>(slot);
        b.bindCheck(IDC_SIGNALS_ON1 + offset, form.signalOn[slot]);
        b.bindText(IDC_SIGNALS_NAME1 + offset, form.signalName[slot]);
        b.bindButton(IDC_SIGNALS_EDIT1 + offset, form.editSignal[slot]);
    }
    b.bindInteger(IDC_SIGNALS_BETWEEN_CARS, form.timeMinBetweenSimilarCar);
    b.bindInteger(IDC_SIGNALS_MIN_STOP, form.timeMinStop);
    b.bindCheck(IDC_SIGNALS_MOVING, form.notDelMoveGroup);
    b.bindReal(IDC_SIGNALS_MOVING_CONF, form.notDelMoveGroupQualThresh);
    b.bindCheck(IDC_SIGNALS_ONE_NUMBER, form.onlyOneNumber);
    b.bindCheck(IDC_SIGNALS_WHITE_LISTS, form.whiteLists);
    b.bindCheck(IDC_SIGNALS_DAILY, form.dailyReport);
    b.bindTime(IDC_SIGNALS_DAILY_TIME, form.timeDailyReport);
    b.bindDate(IDC_SIGNALS_START_DATE, form.startDate);
    b.bindTime(IDC_SIGNALS_START_TIME, form.startTime);
    b.bindDate(IDC_SIGNALS_END_DATE, form.endDate);
    b.bindTime(IDC_SIGNALS_END_TIME, form.endTime);
    b.bindButton(IDC_SIGNALS_GENERATE, form.generateReport);
    b.bindCheck(IDC_SIGNALS_BUTTON_OPEN, form.buttonOpen);
    b.bindList(IDC_SIGNALS_OPEN_SIGNAL, form.buttonOpenSignal);
    b.bindCheck(IDC_SIGNALS_BUTTON_CLOSE, form.buttonClose);
    b.bindList(IDC_SIGNALS_CLOSE_SIGNAL, form.buttonCloseSignal);
    for (int id : {IDC_SIGNALS_START_DATE, IDC_SIGNALS_END_DATE})
        formatPicker(b, id, L"dd.MM.yyyy");
    for (int id : {IDC_SIGNALS_DAILY_TIME, IDC_SIGNALS_START_TIME, IDC_SIGNALS_END_TIME})
        formatPicker(b, id, L"HH:mm:ss");
}

} // namespace

bool runSignalsReportsDialog(HWND owner, core::AppState& state)
{
    Win32Messages messages(owner);
    // The signal dialog opens over this one, known once it stands.
    HWND window = nullptr;
    dialogs::SignalsReportsForm form(state.scratchControl, state.scratchConfig.videoName, state.reportRequested,
                                     messages, [&window, &state](config::SignalConfig& working) {
                                         return runSignalDialog(window, state, working);
                                     });
    FormDialog dialog;
    dialog.resource = IDD_SIGNALS_REPORTS;
    dialog.title = form.title();
    dialog.bind = [&form, &window](FormBinding& b) {
        bindSignalsReportsForm(b, form);
        window = b.dialog();
        // "Генерация" that passes closes the dialog with OK, as "ОК" does.
        form.closeWithOk = [&window] { ::EndDialog(window, IDOK); };
    };
    return runFormDialog(owner, form, dialog) == IDOK;
}

} // namespace vx::ui::win32
