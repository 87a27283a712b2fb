#include "ui/win32/recognition_window.h"

#include "dialogs/recognition_form.h"
#include "ui/win32/form_dialog.h"
#include "ui/win32/message_boxes.h"
#include "ui/win32/recognition_window_ids.h"
#include "ui/win32/resource_ids.h"

namespace vx::ui::win32 {

namespace {

void bindRecognitionForm(FormBinding& b, dialogs::RecognitionForm& form)
{
    b.bindCheck(IDC_RECOG_UNSHOW_RESULT, form.unShowResultVideo);
    b.bindCheck(IDC_RECOG_DEBUG, form.debugModeRecog);
    b.bindCheck(IDC_RECOG_OPTIONS_BUTTONS, form.drawOptionsButtons);
    b.bindList(IDC_RECOG_METHOD, form.method);
    b.bindInteger(IDC_RECOG_DELAY_SAME, form.delaySendSame);
    b.bindList(IDC_RECOG_TRAJ_TYPE, form.trajTypeSpeed);
    b.bindInteger(IDC_RECOG_LIMIT_TIME, form.tLimitTime);
    b.bindInteger(IDC_RECOG_LIMIT_FRAMES, form.tLimitFrames);
    b.bindReal(IDC_RECOG_MIN_CONF, form.minConf);
    b.bindCheck(IDC_RECOG_SQUARE, form.square);
    b.bindReal(IDC_RECOG_MIN_SQUARE, form.minSquare);
    b.bindReal(IDC_RECOG_MAX_SQUARE, form.maxSquare);
    b.bindCheck(IDC_RECOG_USE_ZONE, form.useZone);
    b.bindReal(IDC_RECOG_X, form.x);
    b.bindReal(IDC_RECOG_Y, form.y);
    b.bindReal(IDC_RECOG_WIDTH, form.width);
    b.bindReal(IDC_RECOG_HEIGHT, form.height);
    b.bindReal(IDC_RECOG_LINES_Y, form.linesY);
    b.bindReal(IDC_RECOG_LINE_ALFA, form.lineAlfa);
    b.bindReal(IDC_RECOG_LINE_DIST, form.lineDist);
    b.bindCheck(IDC_RECOG_INVERT, form.invert);
    b.bindCheck(IDC_RECOG_DELETE_BORDER, form.deleteBorderNumbers);
    b.bindCheck(IDC_RECOG_NO_TEMPLATE, form.deleteNumbersWidthoutTemplate);
    b.bindCheck(IDC_RECOG_KEEP_CHINA, form.noDeleteWithChina);
}

} // namespace

bool runRecognitionDialog(HWND owner, core::AppState& state)
{
    Win32Messages messages(owner);
    dialogs::RecognitionForm form(state.scratchRecognition, state.scratchConfig, messages);
    return runBoundDialog(owner, form, IDD_RECOGNITION, bindRecognitionForm, form.title());
}

} // namespace vx::ui::win32
