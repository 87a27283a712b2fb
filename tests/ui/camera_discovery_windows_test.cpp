// The discovery windows on the offscreen platform: the calls run on their
// own threads while the window keeps its loop, and their ends close it.
#include <gtest/gtest.h>

#include <QLineEdit>
#include <QListWidget>
#include <QProgressBar>
#include <QPushButton>
#include <chrono>
#include <thread>

#include "support/qt_application.h"
#include "ui/qt/camera_discovery_windows.h"

using namespace vx;
using namespace vx::dialogs;
using vx::test::spinUntil;

namespace {

ToolCall slowTool(std::string text, int ms)
{
    return [text, ms](const std::string&) {
        std::this_thread::sleep_for(std::chrono::milliseconds(ms));
        return ToolOutput{true, text};
    };
}

TEST(CameraDiscoveryWindows, ScanEndsWithTheOutputOrACancel)
{
    test::qtApplication();
    ui::CameraScanWindow window(slowTool("{\"cameras\":[]}", 50), nullptr);
    window.start();
    EXPECT_EQ(window.bar->maximum(), 0);   // moving
    ASSERT_TRUE(spinUntil([&] { return !window.isVisible(); }));
    EXPECT_EQ(window.result(), QDialog::Accepted);
    EXPECT_EQ(window.form().output(), "{\"cameras\":[]}");

    ui::CameraScanWindow cancelled(slowTool("late", 200), nullptr);
    cancelled.start();
    cancelled.cancel->click();
    EXPECT_FALSE(cancelled.isVisible());
    EXPECT_EQ(cancelled.result(), QDialog::Rejected);
    spinUntil([] { return false; }, 400);   // the call ends meanwhile and is discarded
    EXPECT_EQ(cancelled.form().output(), "");
}

// A call that finds no link leaves the dialog open: the form tests' and
// the discovery tests'.
TEST(CameraDiscoveryWindows, LinkWindowWaitsForTheCallAndTakesTheLink)
{
    test::qtApplication();
    ScriptedMessages messages;
    CameraLinkForm form({{"Gate East", "127.0.0.11"}, {"Gate West", "127.0.0.12"}}, messages);
    ui::CameraLinkWindow window(form, slowTool("{\"rtsp\":\"rtsp://127.0.0.12/a\"}", 30), nullptr);
    window.start();
    window.refresh();
    ASSERT_EQ(window.cameras->count(), 2);

    window.cameras->setCurrentRow(1);
    window.password->setText("pw");
    window.ok->click();
    EXPECT_FALSE(window.ok->isEnabled() || window.cancel->isEnabled());
    EXPECT_EQ(window.bar->maximum(), 0);
    ASSERT_TRUE(spinUntil([&] { return !window.isVisible(); }));
    EXPECT_EQ(window.result(), QDialog::Accepted);
    EXPECT_EQ(form.link(), "rtsp://admin:pw@127.0.0.12/a");
}

} // namespace
