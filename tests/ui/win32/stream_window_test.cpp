// The stream dialog as a Win32 dialog, opened by a click on the add tile
// through the edit flow, driven with the messages its controls take.
#include <gtest/gtest.h>

#include "core/edit_fixture.h"
#include "support/win32/dialog_driver.h"
#include "ui/win32/stream_window.h"
#include "ui/win32/stream_window_ids.h"

using namespace vx;
using namespace vx::test;

TEST(StreamWindow, AnAddedStreamIsTypedCheckedRefusedOnceAndWritten)
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
        click(d, IDC_STREAM_WRITE_VIDEO);
        click(d, IDC_STREAM_WRITE_ONLY_OBJECTS);
        click(d, IDC_STREAM_NVIDIA);
        click(d, IDC_STREAM_DIRECTX);

        typeText(d, IDC_STREAM_PATH, " rtsp://10.0.0.5:554/live ");
        typeText(d, IDC_STREAM_WIDTH, "1280");
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
    EXPECT_EQ(file.common.width, 1280);
    EXPECT_FLOAT_EQ(file.common.fps, 12.5f);
    EXPECT_TRUE(file.common.reconnect);
    EXPECT_TRUE(file.common.writeVideo);
    EXPECT_TRUE(file.common.writeOnlyNumObj);
    EXPECT_FALSE(file.common.decodeNvidia);
    EXPECT_TRUE(file.common.decodeDirectX);
    EXPECT_EQ(file.common.videoChunk, 45);
}
