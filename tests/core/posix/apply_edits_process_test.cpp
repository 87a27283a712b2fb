// Applying edits against the real vxVideoStream and a control stand-in on
// the loopback: clicks by coordinates on a laid-out tile area, the real
// stream control, command channel and control service worker.
#include <gtest/gtest.h>

#include <unistd.h>

#include <filesystem>

#include "core/edit_fixture.h"
#include "core/edit_wiring.h"
#include "core/process_actions.h"
#include "platform/window_endpoint.h"
#include "supervision/service_launcher.h"
#include "supervision/service_test_support.h"
#include "support/installation.h"
#include "support/temp_dir.h"

using namespace vx;
using namespace vx::core;

namespace {

namespace fs = std::filesystem;

struct ProcessWorld : test::EditWorld {
    test::RuntimeSandbox sandbox;
    test::LocalService control;
    test::TestServices services;
    std::shared_ptr<supervision::StreamControl> streams;
    int launched = 0;
    std::int32_t id = 900000 + static_cast<std::int32_t>(::getpid() % 10000) * 10;

    ProcessWorld()
    {
        state.baseDirectory = VEXLANE_BIN_DIR;
        state.liveMainConfig.systemLogPath = (root.path() / "logs").string();
        state.liveMainConfig.videoPath = (root.path() / "videos").string();
        state.storedMainConfig = state.liveMainConfig;
        fs::create_directories(root.path() / "logs");
        streams = supervision::makeStreamControl(state);
        streams->startWatchMs = 300;
        services.settings.controlPort = control.port();
        supervision::initHTTPClientDirect(*services);
    }
    ~ProcessWorld()
    {
        while (long p = pid())
            if (!platform::terminateProcess(p) || !test::waitFor([&] { return pid() != p; }, 5000))
                break;
    }
    core::EditHooks realHooks()
    {
        core::EditHooks h = systemEditHooks(state, streams, services.context);
        h.streamDialog = [this] { return streamDialog(state.scratchConfig); };
        h.messages = &messages;
        h.launch = [this](std::function<void()> task) {
            ++launched;
            return launchAsync(std::move(task));
        };
        return h;
    }
    // Runs the click and waits for the tasks it started.
    void clickReal(int index, int zone)
    {
        clickWith(realHooks(), index, zone);
        state.pendingTasks.waitAll();
    }
    std::string name() const { return "Поток " + std::to_string(id); }
    long pid()
    {
        const std::string arg = configs() + "/" + config::cameraFileName(id);
        return supervision::findProcessByArg(*streams, supervision::streamImageName(), arg);
    }
    // What the tick and the drawing do: the record takes its window.
    bool windowFound()
    {
        platform::WindowHandle window = 0;
        test::waitFor([&] { return (window = platform::findWindow("", name())) != 0; }, 10000);
        state.streams.withDrawLock([&](std::vector<CameraRuntime>& r) {
            r[0].running = window != 0;
            r[0].channel.window = window;
        });
        return window != 0;
    }
};

} // namespace

TEST(ApplyEditsProcess, EditsReachTheRunningStreamAndTheControlService)
{
    ProcessWorld w;
    w.addStream(w.id, config::utf8ToCp1251(w.name()), std::string(VEXLANE_BIN_DIR) + "/demo_videos/gate_entry.avi");
    w.clickReal(0, 0);
    ASSERT_TRUE(w.windowFound());
    const long first = w.pid();
    ASSERT_NE(first, 0);

    // Only the window position: the files are written, the process stays.
    w.streamDialog = [](ScratchCommon& s) { s.xWindow = 321; return true; };
    w.clickReal(0, 1);
    EXPECT_EQ(w.launched, 1);   // the start's task, nothing more
    EXPECT_EQ(w.readFile(w.id).common.xWindow, 321);
    EXPECT_EQ(w.pid(), first);

    // The video window hidden and shown again: signalled, not restarted.
    w.clickReal(0, 6);
    w.clickReal(0, 6);
    EXPECT_EQ(w.pid(), first);
    EXPECT_FALSE(w.readFile(w.id).common.unShowVideo);

    // A new frame rate restarts the stream.
    w.streamDialog = [](ScratchCommon& s) { s.fps = 7.0f; return true; };
    w.clickReal(0, 1);
    EXPECT_TRUE(test::waitFor([&] { return w.pid() != 0 && w.pid() != first; }, 10000));
    // The first process wrote its log at its end.
    const std::string log = test::readFileBytes(w.root.path() / "logs" / ("vxVideoStreamLog" + std::to_string(w.id) + ".txt"));
    EXPECT_NE(log.find("hidevideo true"), std::string::npos);
    EXPECT_NE(log.find("hidevideo false"), std::string::npos);

    // The hand signals, as the tile's buttons send them.
    config::CameraControl buttons = w.state.streams.getControl(0);
    buttons.buttonOpen = true;
    buttons.buttonClose = true;
    w.state.streams.setControl(0, buttons);
    w.clickReal(0, 100);
    w.clickReal(0, 101);
    EXPECT_TRUE(w.control.saw("POST /HandSignal open=0 value=" + std::to_string(w.id)));
    EXPECT_TRUE(w.control.saw("POST /HandSignal open=1 value=" + std::to_string(w.id)));

    // Delete: the record goes, the process and the file stay.
    const long second = w.pid();
    w.messages.answer(true);
    w.clickReal(0, 4);
    EXPECT_EQ(w.state.streams.size(), 0);
    EXPECT_EQ(w.pid(), second);
    EXPECT_TRUE(fs::exists(config::cameraFilePath(w.configs(), w.id)));
}
