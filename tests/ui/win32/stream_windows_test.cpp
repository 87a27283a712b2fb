// The stream, recognition, signals and reports, and signal dialogs as Win32
// dialogs, opened by clicks on the add tile and a tile's zones through the
// edit flow and driven with the messages their controls take. The forms' own
// rules are the form tests'.
#include <gtest/gtest.h>

#include "config/white_list_registry.h"
#include "core/edit_fixture.h"
#include "dialogs/white_list_manager_form.h"
#include "support/win32/dialog_driver.h"
#include "ui/win32/recognition_window.h"
#include "ui/win32/recognition_window_ids.h"
#include "ui/win32/signal_window_ids.h"
#include "ui/win32/signals_reports_window.h"
#include "ui/win32/signals_reports_window_ids.h"
#include "ui/win32/stream_window.h"
#include "ui/win32/stream_window_ids.h"

using namespace vx;
using namespace vx::test;
using Calls = std::vector<std::string>;

namespace {

constexpr int recognitionZone = 2;
constexpr int signalsZone = 3;

SYSTEMTIME at(WORD year, WORD month, WORD day, WORD hour, WORD minute)
{
    SYSTEMTIME time{};
    time.wYear = year;
    time.wMonth = month;
    time.wDay = day;
    time.wHour = hour;
    time.wMinute = minute;
    return time;
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

TEST(StreamWindows, AnAddedStreamIsTypedCheckedAndWritten)
{
    EditWorld w;
    w.addStream(0, cp("Въезд"));
    core::EditHooks hooks = w.hooks();
    hooks.streamDialog = [&w] { return ui::win32::runStreamDialog(nullptr, w.state); };
    DialogScript script([&] {
        HWND d = waitForDialog("Добавить видеопоток");
        ASSERT_TRUE(d);
        shoot(d, "stream");
        EXPECT_EQ(shownText(d, IDC_STREAM_NAME), "Камера 1");
        EXPECT_EQ(shownText(d, IDC_STREAM_CHUNK), "45");
        click(d, IDC_STREAM_RECONNECT);
        click(d, IDC_STREAM_DIRECTX);
        typeText(d, IDC_STREAM_PATH, " rtsp://10.0.0.5:554/live ");
        typeText(d, IDC_STREAM_NAME, "Выезд");
        typeText(d, IDC_STREAM_FPS, "12,5");
        click(d, IDOK);
        EXPECT_TRUE(waitGone(d));
    });
    w.clickWith(hooks, liveview::addTile, 0);
    ASSERT_TRUE(script.finished());

    const config::CameraConfig file = w.readFile(1);
    EXPECT_EQ(file.common.videoPath, "rtsp://10.0.0.5:554/live");
    EXPECT_EQ(file.common.videoName, cp("Выезд"));
    EXPECT_FLOAT_EQ(file.common.fps, 12.5f);
    EXPECT_TRUE(file.common.reconnect);
    EXPECT_TRUE(file.common.decodeDirectX);
    EXPECT_EQ(file.common.videoChunk, 45);
}

TEST(StreamWindows, RecognitionFollowsTheMethodAndIsWritten)
{
    EditWorld w;
    w.addStream(3, cp("Въезд"));
    core::EditHooks hooks = w.hooks();
    hooks.recognitionDialog = [&w] { return ui::win32::runRecognitionDialog(nullptr, w.state); };
    DialogScript script([&] {
        HWND d = waitForDialog("Настройка распознавания видеопотока Въезд");
        ASSERT_TRUE(d);
        shoot(d, "recognition");
        EXPECT_EQ(selectedIndex(d, IDC_RECOG_METHOD), 1);
        choose(d, IDC_RECOG_METHOD, 4);
        click(d, IDC_RECOG_USE_ZONE);
        typeText(d, IDC_RECOG_WIDTH, "0,5");
        typeText(d, IDC_RECOG_LINE_ALFA, "-30");
        click(d, IDC_RECOG_OPTIONS_BUTTONS);
        click(d, IDOK);
        EXPECT_TRUE(waitGone(d));
    });
    w.clickWith(hooks, 0, recognitionZone);
    ASSERT_TRUE(script.finished());

    const config::CameraConfig file = w.readFile(3);
    EXPECT_EQ(file.recognition.method, 4);
    EXPECT_TRUE(file.recognition.useZone);
    EXPECT_FLOAT_EQ(file.recognition.width, 0.5f);
    EXPECT_FLOAT_EQ(file.recognition.lineAlfa, -30.0f);
    EXPECT_TRUE(file.common.drawOptionsButtons);
}

// A signal edited in its nested dialog, which runs the list manager over
// itself, then the picked period and "generate" ask for a report.
TEST(StreamWindows, ASignalIsEditedAndThePickedPeriodRequestsAReport)
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
    config::ReceiverSample gate;
    gate.type = 1;
    gate.URL = "http://127.0.0.1/open";
    w.state.receiverSamples = {config::ReceiverSample{}, gate};
    WhiteListsInUse lists(w.configs());
    core::EditHooks hooks = w.hooks();
    hooks.signalsDialog = [&w] {
        w.calls.push_back("signals dialog");
        return ui::win32::runSignalsReportsDialog(nullptr, w.state);
    };
    DialogScript script([&] {
        HWND d = waitForDialog("Настройка сигналов видеопотока Въезд");
        ASSERT_TRUE(d);
        shoot(d, "signals_reports");
        click(d, IDC_SIGNALS_ON2);
        click(d, IDC_SIGNALS_EDIT2);
        HWND s = waitForDialog("Настройка сигнала 2");
        ASSERT_TRUE(s);
        shoot(s, "signal");
        typeText(s, IDC_SIGNAL_NAME, "Шлагбаум");
        click(s, IDC_SIGNAL_TO_WHITE_LIST);
        click(s, IDC_SIGNAL_CHANGE_LISTS);
        HWND m = waitForDialog("Менеджер белых списков");
        ASSERT_TRUE(m);
        EXPECT_EQ(::GetWindow(m, GW_OWNER), s);
        ::PostMessageW(m, WM_COMMAND, IDCANCEL, 0);
        EXPECT_TRUE(waitGone(m));
        choose(s, IDC_SIGNAL_WHITE_LIST, 1);
        choose(s, IDC_SIGNAL_RECEIVERS, 1);
        click(s, IDC_SIGNAL_APPLY_RECEIVER);
        typeText(s, IDC_SIGNAL_WAIT, "50000");
        click(s, IDOK);
        EXPECT_TRUE(waitGone(s));
        EXPECT_EQ(shownText(d, IDC_SIGNALS_NAME2), "Шлагбаум");

        click(d, IDC_SIGNALS_DAILY);
        pick(d, IDC_SIGNALS_DAILY_TIME, at(2025, 1, 1, 23, 30));
        pick(d, IDC_SIGNALS_START_DATE, at(2025, 6, 1, 0, 0));
        choose(d, IDC_SIGNALS_CLOSE_SIGNAL, 3);
        typeText(d, IDC_SIGNALS_MIN_STOP, "45");
        click(d, IDC_SIGNALS_GENERATE);
        EXPECT_TRUE(waitGone(d));
    });
    w.clickWith(hooks, 0, signalsZone);
    ASSERT_TRUE(script.finished());

    EXPECT_EQ(w.calls, (Calls{"signals dialog", "task", "control /GenerateReport restart 3 0", "task",
                              "control /UpdateConfig restart -1 0"}));
    const config::CameraControl control = w.readFile(3).control;
    EXPECT_EQ(control.Control[1].name, cp("Шлагбаум"));
    EXPECT_EQ(control.Control[1].nameWhiteList, "Staff");
    EXPECT_EQ(control.Control[1].timeOutSend, 50000);
    EXPECT_EQ(control.Control[1].signal.URL, "http://127.0.0.1/open");
    EXPECT_TRUE(control.dailyReport);
    EXPECT_EQ(config::formatDateTime(control.timeDailyReport), "2025-06-14 23:30:00");
    EXPECT_EQ(config::formatDateTime(control.timeReportStart), "2025-06-01 08:00:00");
    EXPECT_EQ(control.buttonCloseSignal, 3);
    EXPECT_EQ(control.timeMinStop, 45);
}
