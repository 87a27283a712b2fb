// The recognition, signals and reports, and signal dialogs as Win32 dialogs,
// opened by clicks on a tile's zones through the edit flow and driven with
// the messages their controls take.
#include <gtest/gtest.h>

#include "config/white_list_registry.h"
#include "core/edit_fixture.h"
#include "dialogs/white_list_manager_form.h"
#include "support/text_file.h"
#include "support/win32/dialog_driver.h"
#include "ui/win32/recognition_window.h"
#include "ui/win32/recognition_window_ids.h"
#include "ui/win32/signal_window_ids.h"
#include "ui/win32/signals_reports_window.h"
#include "ui/win32/signals_reports_window_ids.h"

using namespace vx;
using namespace vx::test;
using Calls = std::vector<std::string>;

namespace {

constexpr int recognitionZone = 2;
constexpr int signalsZone = 3;

// The lines of a stream file from `head` to the end of its block.
std::string section(const std::string& text, const std::string& head, const std::string& end)
{
    const std::size_t from = text.find(head);
    if (from == std::string::npos)
        return "no " + head;
    const std::size_t to = text.find(end, from);
    return to == std::string::npos ? text.substr(from) : text.substr(from, to + end.size() - from);
}

std::string streamText(const EditWorld& w, std::int32_t id)
{
    return readText(config::cameraFilePath(w.configs(), id));
}

SYSTEMTIME timeOfDay(WORD hour, WORD minute)
{
    SYSTEMTIME time{};
    time.wYear = 2025;
    time.wMonth = 1;
    time.wDay = 1;
    time.wHour = hour;
    time.wMinute = minute;
    return time;
}

SYSTEMTIME day(WORD year, WORD month, WORD dayOfMonth)
{
    SYSTEMTIME time{};
    time.wYear = year;
    time.wMonth = month;
    time.wDay = dayOfMonth;
    return time;
}

// Several lines typed into a multi-line edit: it tells its dialog EN_CHANGE
// for a replaced selection, not for WM_SETTEXT.
void typeLines(HWND dialog, int id, const wchar_t* text)
{
    HWND edit = ::GetDlgItem(dialog, id);
    ::SendMessageW(edit, EM_SETSEL, 0, -1);
    ::SendMessageW(edit, EM_REPLACESEL, TRUE, reinterpret_cast<LPARAM>(text));
}

core::EditHooks withSignalsDialog(EditWorld& w)
{
    core::EditHooks hooks = w.hooks();
    hooks.signalsDialog = [&w] {
        w.calls.push_back("signals dialog");
        return ui::win32::runSignalsReportsDialog(nullptr, w.state);
    };
    return hooks;
}

// The process's white lists for one test, in the test's folder, where the
// manager reads them anew: "Empty" and a plain list "Staff". The other tests
// get theirs back.
struct WhiteListsInUse {
    config::WhiteListTable kept = config::whiteListTable();
    explicit WhiteListsInUse(const std::string& configDirectory)
    {
        config::WhiteListTable& table = config::whiteListTable();
        table = {};
        config::writeDefaultWhiteLists(configDirectory);
        config::loadAllWhiteLists(table, configDirectory);
        config::addWhiteList(table, configDirectory, "Staff", config::plainListKind);
        dialogs::whiteListManagerState() = {};
    }
    ~WhiteListsInUse()
    {
        config::whiteListTable() = kept;
        dialogs::whiteListManagerState() = {};
    }
};

} // namespace

TEST(RecognitionSignalsWindows, RecognitionFollowsTheMethodIsRefusedOnceAndRestartsTheStream)
{
    EditWorld w;
    w.addStream(3, cp("Въезд"));
    w.setRunning(0, true);
    core::EditHooks hooks = w.hooks();
    hooks.recognitionDialog = [&w] { return ui::win32::runRecognitionDialog(nullptr, w.state); };
    DialogScript script([&] {
        HWND d = waitForDialog("Настройка распознавания видеопотока Въезд");
        ASSERT_TRUE(d);
        shoot(d, "recognition");
        EXPECT_EQ(selectedIndex(d, IDC_RECOG_METHOD), 1);
        EXPECT_EQ(shownText(d, IDC_RECOG_LINE_DIST), "0.05");

        choose(d, IDC_RECOG_METHOD, 4);
        choose(d, IDC_RECOG_TRAJ_TYPE, 1);
        click(d, IDC_RECOG_USE_ZONE);
        click(d, IDC_RECOG_UNSHOW_RESULT);

        typeText(d, IDC_RECOG_X, "0.5");
        typeText(d, IDC_RECOG_WIDTH, "0,5");
        typeText(d, IDC_RECOG_LINE_ALFA, "-30");
        click(d, IDC_RECOG_OPTIONS_BUTTONS);
        click(d, IDOK);
        EXPECT_TRUE(waitGone(d));
    });
    w.clickWith(hooks, 0, recognitionZone);
    ASSERT_TRUE(script.finished());

    const std::string text = streamText(w, 3);
    EXPECT_NE(text.find("\t\t\"drawOptionsButtons\":true,\n"), std::string::npos);
    EXPECT_EQ(section(text, "\t\"Recognition\"", "\n\t},\n"),
              "\t\"Recognition\":{\n"
              "\t\t\"unShowResultVideo\":true,\n"
              "\t\t\"debugModeRecog\":false,\n"
              "\t\t\"method\":4,\n"
              "\t\t\"delaySendSame\":1000,\n"
              "\t\t\"trajTypeSpeed\":1,\n"
              "\t\t\"tLimitTime\":10,\n"
              "\t\t\"tLimitFrames\":100,\n"
              "\t\t\"minConf\":0.5,\n"
              "\t\t\"showTime\":1000,\n"
              "\t\t\"Square\":false,\n"
              "\t\t\"minSquare\":0,\n"
              "\t\t\"maxSquare\":1,\n"
              "\t\t\"useZone\":true,\n"
              "\t\t\"x\":0.5,\n"
              "\t\t\"y\":0,\n"
              "\t\t\"width\":0.5,\n"
              "\t\t\"height\":1,\n"
              "\t\t\"linesY\":0.5,\n"
              "\t\t\"lineAlfa\":-30,\n"
              "\t\t\"lineDist\":0.05,\n"
              "\t\t\"portServer\":1234,\n"
              "\t\t\"timeoutServerRecog\":4,\n"
              "\t\t\"deleteBorderNumbers\":true,\n"
              "\t\t\"deleteNumbersWidthoutTemplate\":false,\n"
              "\t\t\"noDeleteWithChina\":false,\n"
              "\t\t\"invert\":false\n"
              "\t},\n");
}

TEST(RecognitionSignalsWindows, ASignalEditedFromTheSignalsDialogIsRefusedOnceAndWritten)
{
    EditWorld w;
    w.addStream(3, cp("Въезд"));
    config::ReceiverSample gate;
    gate.name = "Gate";
    gate.type = 1;
    gate.URL = "http://127.0.0.1/open";
    gate.image = true;
    w.state.receiverSamples = {config::ReceiverSample{}, gate};
    WhiteListsInUse lists(w.configs());
    DialogScript script([&] {
        HWND d = waitForDialog("Настройка сигналов видеопотока Въезд");
        ASSERT_TRUE(d);
        shoot(d, "signals_reports");
        EXPECT_EQ(shownText(d, IDC_SIGNALS_NAME2), "");
        click(d, IDC_SIGNALS_ON2);
        click(d, IDC_SIGNALS_EDIT2);

        HWND s = waitForDialog("Настройка сигнала 2");
        ASSERT_TRUE(s);
        shoot(s, "signal");
        typeText(s, IDC_SIGNAL_NAME, "Шлагбаум");
        click(s, IDC_SIGNAL_TO_WHITE_LIST);
        choose(s, IDC_SIGNAL_WHITE_LIST, 1);
        // "Изменить" runs the manager over this dialog; back from it, the
        // list shows the stored name again.
        click(s, IDC_SIGNAL_CHANGE_LISTS);
        HWND m = waitForDialog("Менеджер белых списков");
        ASSERT_TRUE(m);
        EXPECT_EQ(::GetWindow(m, GW_OWNER), s);
        ::PostMessageW(m, WM_COMMAND, IDCANCEL, 0);
        EXPECT_TRUE(waitGone(m));
        EXPECT_EQ(selectedIndex(s, IDC_SIGNAL_WHITE_LIST), 0);
        choose(s, IDC_SIGNAL_WHITE_LIST, 1);
        click(s, IDC_SIGNAL_CLOSES);
        choose(s, IDC_SIGNAL_RECEIVERS, 1);
        click(s, IDC_SIGNAL_APPLY_RECEIVER);
        typeLines(s, IDC_SIGNAL_BODY, L"{\"plate\":\"{plate}\"}\r\nline 2");
        choose(s, IDC_SIGNAL_CONDITIONS, 2);
        typeText(s, IDC_SIGNAL_WAIT, "50000");
        click(s, IDOK);
        EXPECT_TRUE(waitGone(s));

        EXPECT_EQ(shownText(d, IDC_SIGNALS_NAME2), "Шлагбаум");
        click(d, IDOK);
        EXPECT_TRUE(waitGone(d));
    });
    w.clickWith(withSignalsDialog(w), 0, signalsZone);
    ASSERT_TRUE(script.finished());

    EXPECT_EQ(section(streamText(w, 3), "\t\t\t\"numSignal\":1,", "\n\t\t},\n"),
              "\t\t\t\"numSignal\":1,\n"
              "\t\t\t\"on\":true,\n"
              "\t\t\t\"name\":\"Шлагбаум\",\n"
              "\t\t\t\"typeOpen\":false,\n"
              "\t\t\t\"typeSendAll\":false,\n"
              "\t\t\t\"nameWhiteList\":\"Staff\",\n"
              "\t\t\t\"timeOutClose\":10000,\n"
              "\t\t\t\"notSendClose\":false,\n"
              "\t\t\t\"timeOutSend\":50000,\n"
              "\t\t\t\"noWhiteSignal\":false,\n"
              "\t\t\t\"allSignalsFlag\":false,\n"
              "\t\t\t\"minTimeOutBWSignals\":0,\n"
              "\t\t\t\"conditionsSignals\":2,\n"
              "\t\t\t\"signal.typeRequest\":1,\n"
              "\t\t\t\"signal.URL\":\"http://127.0.0.1/open\",\n"
              "\t\t\t\"signal.body\":\"{\\\"plate\\\":\\\"{plate}\\\"}\\nline 2\",\n"
              "\t\t\t\"signal.bodyEncoding\":0,\n"
              "\t\t\t\"signal.image\":true,\n"
              "\t\t\t\"signal.smallImage\":false,\n"
              "\t\t\t\"signal.plateImage\":false,\n"
              "\t\t\t\"signal.contentType\":0,\n"
              "\t\t\t\"signal.carImage\":false\n"
              "\t\t},\n");
}

TEST(RecognitionSignalsWindows, PickedPeriodAndGenerationRequestAReport)
{
    EditWorld w;
    w.addStream(3, cp("Въезд"));
    // Times stored in the file show in the pickers.
    {
        config::CameraConfig camera = w.readFile(3);
        for (config::DateTime* time :
             {&camera.control.timeDailyReport, &camera.control.timeReportStart, &camera.control.timeReportEnd})
            config::parseDateTime("2025-06-14 08:00:00", *time);
        config::saveCamera(config::cameraFilePath(w.configs(), 3), camera, 1234, 1235);
    }
    w.state.statusControl = 0;
    DialogScript script([&] {
        HWND d = waitForDialog("Настройка сигналов видеопотока Въезд");
        ASSERT_TRUE(d);
        EXPECT_EQ(shownText(d, IDC_SIGNALS_BETWEEN_CARS), "120");
        EXPECT_EQ(shownText(d, IDC_SIGNALS_MOVING_CONF), "0.7");
        click(d, IDC_SIGNALS_DAILY);
        pick(d, IDC_SIGNALS_DAILY_TIME, timeOfDay(23, 30));
        pick(d, IDC_SIGNALS_START_DATE, day(2025, 6, 1));
        pick(d, IDC_SIGNALS_START_TIME, timeOfDay(10, 0));
        pick(d, IDC_SIGNALS_END_TIME, timeOfDay(12, 0));
        click(d, IDC_SIGNALS_BUTTON_CLOSE);
        choose(d, IDC_SIGNALS_CLOSE_SIGNAL, 3);
        typeText(d, IDC_SIGNALS_MIN_STOP, "45");
        click(d, IDC_SIGNALS_GENERATE);
        EXPECT_TRUE(waitGone(d));
    });
    w.clickWith(withSignalsDialog(w), 0, signalsZone);
    ASSERT_TRUE(script.finished());

    EXPECT_EQ(w.calls, (Calls{"signals dialog", "task", "control /GenerateReport restart 3 0", "task",
                              "control /UpdateConfig restart -1 0"}));
    EXPECT_FALSE(w.state.reportRequested);
    const std::string text = streamText(w, 3);
    EXPECT_EQ(section(text, "\t\"ControlReport\"", "\n\t},\n"),
              "\t\"ControlReport\":{\n"
              "\t\t\"onlyOneNumber\":false,\n"
              "\t\t\"whiteLists\":false,\n"
              "\t\t\"timeMinBetweenSimilarCar\":120,\n"
              "\t\t\"timeMinStop\":45,\n"
              "\t\t\"dailyReport\":true,\n"
              "\t\t\"notDelMoveGroup\":true,\n"
              "\t\t\"notDelMoveGroupQualThresh\":0.7,\n"
              "\t\t\"timeDailyReport\":\"2025-06-14 23:30:00\",\n"
              "\t\t\"timeReportStart\":\"2025-06-01 10:00:00\",\n"
              "\t\t\"timeReportEnd\":\"2025-06-14 12:00:00\"\n"
              "\t},\n");
    EXPECT_EQ(section(text, "\t\"Buttons\"", "\n\t}\n"),
              "\t\"Buttons\":{\n"
              "\t\t\"buttonOpen\":false,\n"
              "\t\t\"buttonOpenSignal\":0,\n"
              "\t\t\"buttonClose\":true,\n"
              "\t\t\"buttonCloseSignal\":3\n"
              "\t}\n");
}
