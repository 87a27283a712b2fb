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

// Typing into the dialog is the window tests' of tests/app; here the checks.
TEST(StreamWindows, AnAddedStreamIsCheckedAndWritten)
{
    EditWorld w;
    w.addStream(0, cp("Въезд"));
    core::EditHooks hooks = w.hooks();
    hooks.streamDialog = [&w] { return ui::win32::runStreamDialog(nullptr, w.state); };
    DialogScript script([&] {
        HWND d = waitForDialog("Добавить видеопоток");
        ASSERT_TRUE(d);
        shoot(d, "stream");
        click(d, IDC_STREAM_RECONNECT);
        typeText(d, IDC_STREAM_PATH, "rtsp://10.0.0.5:554/live");
        click(d, IDOK);
        EXPECT_TRUE(waitGone(d));
    });
    w.clickWith(hooks, liveview::addTile, 0);
    ASSERT_TRUE(script.finished());
    EXPECT_TRUE(w.readFile(1).common.reconnect);
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
        choose(d, IDC_RECOG_METHOD, 4);
        click(d, IDC_RECOG_USE_ZONE);
        typeText(d, IDC_RECOG_WIDTH, "0,5");
        click(d, IDOK);
        EXPECT_TRUE(waitGone(d));
    });
    w.clickWith(hooks, 0, recognitionZone);
    ASSERT_TRUE(script.finished());

    const config::CameraConfig file = w.readFile(3);
    EXPECT_EQ(file.recognition.method, 4);
    EXPECT_FLOAT_EQ(file.recognition.width, 0.5f);
}

// A signal edited in its nested dialog, which runs the list manager over
// itself, then "generate" asks for a report.
TEST(StreamWindows, ASignalIsEditedAndGenerateRequestsAReport)
{
    EditWorld w;
    w.addStream(3, cp("Въезд"));
    w.state.statusControl = 0;
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
        click(s, IDOK);
        EXPECT_TRUE(waitGone(s));
        EXPECT_EQ(shownText(d, IDC_SIGNALS_NAME2), "Шлагбаум");

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
}
