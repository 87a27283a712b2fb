// Applying edits with the world behind hooks: which dialog opens, what the
// table and the files hold afterwards, which task starts, in which order,
// and the status texts.
#include <gtest/gtest.h>

#include <filesystem>

#include "core/edit_fixture.h"
#include "support/captured_stderr.h"
#include "core/stream_files.h"

using namespace vx;
using namespace vx::core;
using test::cp;
using Calls = std::vector<std::string>;

namespace {

config::MainConfig readMain(const std::string& folder)
{
    config::MainConfig main;
    config::MainConfigFolders folders;
    EXPECT_TRUE(config::loadConfig(folder, folder, main, folders));
    return main;
}

} // namespace

TEST(ApplyEdits, AddTileRefusesTheHundredAndFirstStreamBeforeAnyDialog)
{
    test::EditWorld w;
    for (std::int32_t id = 0; id < maxStreams; ++id)
        w.state.streams.addStream({}, {}, {}, id, true);
    w.click(liveview::addTile, 0);
    EXPECT_EQ(w.calls, Calls{});
    EXPECT_EQ(w.state.status.get(), cp("Слишком много видеопотоков!"));
    EXPECT_EQ(w.state.streams.size(), maxStreams);
}

TEST(ApplyEdits, AddTileWritesTheNewStreamAndTellsTheControlService)
{
    test::EditWorld w;
    w.addStream(0, cp("Въезд"));
    bool sawNew = false;
    w.streamDialog = [&](ScratchCommon& s) {
        sawNew = s.isNew && s.videoName == cp("Камера 1") && s.videoChunk == 45 && s.xWindow == 100;
        s.videoPath = "/videos/gate.avi";
        return false;   // Cancel first
    };
    w.click(liveview::addTile, 0);
    EXPECT_TRUE(sawNew);
    EXPECT_EQ(w.state.streams.size(), 1);
    EXPECT_EQ(w.calls, Calls{"stream dialog"});

    w.calls.clear();
    w.streamDialog = [](ScratchCommon& s) { s.videoPath = "/videos/gate.avi"; return true; };
    w.click(liveview::addTile, 0);
    EXPECT_EQ(w.calls, (Calls{"stream dialog", "redraw", "task", "control /UpdateConfig restart -1 0"}));
    ASSERT_EQ(w.state.streams.size(), 2);
    EXPECT_EQ(w.state.status.get(), cp("Добавлен видеопоток с именем: Камера 1"));
    EXPECT_FALSE(w.state.scratchConfig.isNew);
    EXPECT_EQ(w.state.streams.getConfig(1).ID, 1);
    EXPECT_TRUE(w.state.streams.record(1).planned);
    const config::CameraConfig file = w.readFile(1);
    EXPECT_EQ(file.common.ID, 1);
    EXPECT_EQ(file.common.videoPath, "/videos/gate.avi");
    EXPECT_TRUE(file.common.autoRun);
    EXPECT_EQ(file.common.videoChunk, 45);
    EXPECT_EQ(readMain(w.configs()).videoStreams, (std::vector<std::string>{"vx_stream0.json", "vx_stream1.json"}));
    EXPECT_EQ(w.state.liveMainConfig.videoStreams.size(), 2u);
    EXPECT_EQ(w.state.pendingTasks.size(), 1);
}

// Start and stop follow the running flag; recognition restarts a running stream.
TEST(ApplyEdits, StartStopAndRecognitionFollowTheRunningFlag)
{
    test::EditWorld w;
    w.addStream(0, cp("Въезд"));
    w.click(0, 0);
    EXPECT_EQ(w.state.status.get(), cp("Отправлена команда запуска видеопотока с именем Въезд"));
    w.setRunning(0, true);
    w.click(0, 0);
    EXPECT_EQ(w.state.status.get(), cp("Отправлена команда остановки видеопотока с именем Въезд"));
    w.click(0, 2);
    EXPECT_EQ(w.calls, (Calls{"task", "start 0", "task", "stop 0", "recognition dialog", "task", "restart 0"}));
    EXPECT_EQ(w.state.status.get(), cp("Изменены параметры распознавания видеопотока Въезд"));
}

TEST(ApplyEdits, StreamSettingsTakeTheFileAndRestartOnlyForRestartFields)
{
    test::EditWorld w;
    w.addStream(0, cp("Въезд"));
    w.addStream(3, cp("Выезд"));
    // Edited by hand while the manager runs: the file wins at the next dialog.
    config::CameraConfig byHand = w.readFile(3);
    byHand.common.videoPath = "rtsp://by-hand";
    config::saveCamera(config::cameraFilePath(w.configs(), 3), byHand, 1234, 1235);
    std::string shownPath;
    w.streamDialog = [&](ScratchCommon& s) { shownPath = s.videoPath; s.xWindow = 555; return true; };
    w.setRunning(1, true);
    w.click(1, 1);
    EXPECT_EQ(shownPath, "rtsp://by-hand");
    // Only the window position changed: written, neither restarted nor signalled.
    EXPECT_EQ(w.calls, (Calls{"stream dialog", "redraw"}));
    EXPECT_EQ(w.readFile(3).common.xWindow, 555);
    EXPECT_EQ(w.state.streams.getConfig(1).videoPath, "rtsp://by-hand");
    EXPECT_EQ(w.state.status.get(), cp("Изменены параметры видеопотока Выезд"));

    w.calls.clear();
    w.streamDialog = [](ScratchCommon& s) { s.fps = 12.0f; s.videoName = s.videoName + "2"; return true; };
    w.click(1, 1);
    EXPECT_EQ(w.calls, (Calls{"stream dialog", "redraw", "task", "restart 1"}));
    EXPECT_EQ(w.state.status.get(), cp("Отправлена команда запуска видеопотока с именем Выезд2"));
    EXPECT_FLOAT_EQ(w.readFile(3).common.fps, 12.0f);

    // The same change on a stopped stream: the files only.
    w.calls.clear();
    w.streamDialog = [](ScratchCommon& s) { s.fps = 3.0f; return true; };
    w.click(0, 1);
    EXPECT_EQ(w.calls, (Calls{"stream dialog", "redraw"}));
    EXPECT_FLOAT_EQ(w.readFile(0).common.fps, 3.0f);

    // Cancel leaves table and file alone.
    w.calls.clear();
    w.streamDialog = [](ScratchCommon& s) { s.fps = 9.0f; return false; };
    w.click(0, 1);
    EXPECT_FLOAT_EQ(w.readFile(0).common.fps, 3.0f);
    EXPECT_FLOAT_EQ(w.state.streams.getConfig(0).fps, 3.0f);
}

TEST(ApplyEdits, WindowToggleSignalsARunningStreamWithoutRestart)
{
    test::EditWorld w;
    w.addStream(0, cp("Въезд"));
    w.click(0, 6);
    EXPECT_EQ(w.calls, Calls{"redraw"});
    EXPECT_TRUE(w.readFile(0).common.unShowVideo);
    w.calls.clear();
    w.setRunning(0, true);
    w.click(0, 6);   // shown again
    EXPECT_EQ(w.calls, (Calls{"task", "hide 1 1 0", "redraw"}));
    EXPECT_FALSE(w.state.streams.getConfig(0).unShowVideo);
    w.calls.clear();
    w.click(0, 6);
    EXPECT_EQ(w.calls, (Calls{"task", "hide 1 0 0", "redraw"}));
}

TEST(ApplyEdits, StreamChangeRestartFieldsAndTheConsole)
{
    test::EditWorld w;
    w.addStream(0, cp("Въезд"));
    const config::CameraCommon before = w.state.streams.getConfig(0);
    config::CameraCommon after = before;
    after.showConsole = true;
    after.unShowVideo = true;   // a restart covers it: no hide command
    applyStreamChange(w.state, w.hooks(), before, after, 0);
    after = before;
    after.display = 1;
    after.autoRun = !before.autoRun;
    after.drawOptionsButtons = true;
    after.heightWindow = 1;
    applyStreamChange(w.state, w.hooks(), before, after, 0);
    after = before;
    after.decodeDirectX = true;
    applyStreamChange(w.state, w.hooks(), before, after, 0);
    EXPECT_EQ(w.calls, (Calls{"task", "restart 0", "task", "restart 0"}));
}

TEST(ApplyEdits, DeleteAsksThenLeavesProcessAndFile)
{
    test::EditWorld w;
    w.addStream(0, cp("Въезд"));
    w.addStream(1, cp("Выезд"));
    w.setRunning(0, true);
    w.messages.answer(false);
    w.click(0, 4);
    EXPECT_EQ(w.state.streams.size(), 2);
    ASSERT_EQ(w.messages.shown.size(), 1u);
    EXPECT_EQ(w.messages.shown[0].title, cp("Предупреждение"));
    EXPECT_EQ(w.messages.shown[0].text, cp("Вы уверены, что хотите удалить видеопоток?"));
    EXPECT_EQ(w.messages.shown[0].buttons, dialogs::MessageButtons::okCancel);
    EXPECT_EQ(w.messages.shown[0].icon, dialogs::MessageIcon::warning);

    w.messages.answer(true);
    w.click(0, 4);
    EXPECT_EQ(w.calls, Calls{"redraw"});
    ASSERT_EQ(w.state.streams.size(), 1);
    EXPECT_EQ(w.state.streams.getConfig(0).videoName, cp("Выезд"));
    EXPECT_TRUE(std::filesystem::exists(config::cameraFilePath(w.configs(), 0)));
    EXPECT_EQ(readMain(w.configs()).videoStreams, std::vector<std::string>{"vx_stream1.json"});
    EXPECT_EQ(w.state.liveMainConfig.videoStreams, std::vector<std::string>{"vx_stream1.json"});
    EXPECT_EQ(w.state.status.get(), cp("Удален видеопоток Въезд"));
}

TEST(ApplyEdits, PlannedFlagGoesToTheFileAndTheMainConfig)
{
    test::EditWorld w;
    w.addStream(0, cp("Въезд"));
    w.setRunning(0, true);
    w.click(0, 5);
    EXPECT_EQ(w.calls, Calls{"redraw"});   // a running stream goes on running
    EXPECT_FALSE(w.readFile(0).common.autoRun);
    EXPECT_EQ(readMain(w.configs()).autoRunStreams, std::vector<bool>{false});
    EXPECT_EQ(w.state.status.get(),
              cp("Теперь статус видеопотока является выключенным - он не будет перезапущен при повторном общем "
                 "запуске! Видеопоток Въезд"));
    w.click(0, 5);
    EXPECT_TRUE(w.readFile(0).common.autoRun);
    EXPECT_EQ(w.state.liveMainConfig.autoRunStreams, std::vector<bool>{true});
    EXPECT_EQ(w.state.status.get(),
              cp("Теперь статус видеопотока является включенным - он будет перезапущен при повторном общем "
                 "запуске! Видеопоток Въезд"));
}

TEST(ApplyEdits, ReportWithoutControlServiceStillUpdatesItsConfig)
{
    test::EditWorld w;
    w.addStream(4, cp("Въезд"));
    w.setRunning(0, true);
    w.signalsDialog = [](AppState& s) { s.reportRequested = true; s.scratchControl.timeMinStop = 77; return true; };
    w.state.statusControl = -1;
    w.click(0, 3);
    ASSERT_EQ(w.messages.shown.size(), 1u);
    EXPECT_EQ(w.messages.shown[0].text, cp("Команда генерации отчета не может быть выполнена, поскольку сервер "
                                           "управления не запущен!"));
    EXPECT_EQ(w.calls, (Calls{"signals dialog", "task", "control /UpdateConfig restart -1 0"}));
    EXPECT_FALSE(w.state.reportRequested);
    EXPECT_EQ(w.readFile(4).control.timeMinStop, 77);
    EXPECT_EQ(w.state.status.get(), cp("Изменены параметры управления видеопотока Въезд"));

    w.calls.clear();
    w.state.statusControl = 0;
    w.click(0, 3);
    EXPECT_EQ(w.calls, (Calls{"signals dialog", "task", "control /GenerateReport restart 4 0", "task",
                              "control /UpdateConfig restart -1 0"}));
    EXPECT_EQ(w.state.status.get(), cp("Отдана команда генерации отчета, которая будет выполнена в течение 10 "
                                       "секунд! Результат будет записан в папку reports!"));
}

TEST(ApplyEdits, HandSignalsOnlyWhereTheButtonsAre)
{
    test::EditWorld w;
    w.addStream(7, cp("Въезд"));
    w.click(0, 100);
    w.click(0, 101);
    EXPECT_EQ(w.calls, Calls{});
    config::CameraControl control = w.state.streams.getControl(0);
    control.buttonOpen = true;
    control.buttonClose = true;
    w.state.streams.setControl(0, control);
    w.click(0, 100);
    w.click(0, 101);
    EXPECT_EQ(w.calls, (Calls{"spawned", "control /HandSignal 7 0", "spawned", "control /HandSignal 7 1"}));
    EXPECT_EQ(w.state.status.get(), cp("Отправлен ручной сигнал!"));
}

TEST(ApplyEdits, RewriteAllStreamsWritesTheServicesPorts)
{
    test::EditWorld w;
    w.addStream(0, cp("Въезд"));
    w.addStream(5, cp("Выезд"));
    w.state.controlConfig.port = 4321;
    rewriteAllStreams(w.state);
    EXPECT_EQ(w.readFile(0).control.ControlPortServer, 4321);
    EXPECT_EQ(w.readFile(5).control.ControlPortServer, 4321);
}

// A stream file that is not saved (can't be written, or its text would not
// read back) is shown after the dialog's OK, and the running stream is left
// alone; a new stream whose file was not saved is not kept.
TEST(ApplyEdits, AFailedStreamSaveIsShownAndNothingActsOnIt)
{
    test::EditWorld w;
    w.addStream(0, cp("Въезд"));
    w.setRunning(0, true);
    const std::string before = test::readFileBytes(std::filesystem::path(w.configs()) / "vx_stream0.json");
    const dialogs::Message failed{cp("Сообщение"), cp("Не удалось сохранить файл vx_stream0.json!")};

    w.streamDialog = [](ScratchCommon& s) { s.videoName = cp("Въезд \"1\""); return true; };
    w.click(0, 1);
    ASSERT_EQ(w.messages.shown.size(), 1u);
    EXPECT_EQ(w.messages.shown[0].title, failed.title);
    EXPECT_EQ(w.messages.shown[0].text, failed.text);
    EXPECT_EQ(w.calls, (Calls{"stream dialog", "redraw", "redraw"}));
    EXPECT_EQ(w.state.streams.getConfig(0).videoName, cp("Въезд")) << "the table keeps what the file holds";

    std::filesystem::create_directory(std::filesystem::path(w.configs()) / "vx_stream0.json.new");
    w.calls.clear();
    w.click(0, 2);
    ASSERT_EQ(w.messages.shown.size(), 2u);
    EXPECT_EQ(w.messages.shown[1].text, failed.text);
    EXPECT_EQ(w.calls, (Calls{"recognition dialog", "redraw"}));
    EXPECT_EQ(test::readFileBytes(std::filesystem::path(w.configs()) / "vx_stream0.json"), before);

    std::filesystem::create_directory(std::filesystem::path(w.configs()) / "vx_stream1.json.new");
    w.streamDialog = [](ScratchCommon&) { return true; };
    w.click(liveview::addTile, 0);
    ASSERT_EQ(w.messages.shown.size(), 3u);
    EXPECT_EQ(w.messages.shown[2].text, cp("Не удалось сохранить файл vx_stream1.json!"));
    EXPECT_EQ(w.state.streams.size(), 1);
    EXPECT_EQ(readMain(w.configs()).videoStreams, std::vector<std::string>{"vx_stream0.json"});
}
