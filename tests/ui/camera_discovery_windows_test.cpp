// The discovery windows on the offscreen platform: the calls run on their
// own threads while the window keeps its loop, and their ends close it.
#include <gtest/gtest.h>

#include <QElapsedTimer>
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

namespace {

// Runs the loop until `done` holds, `ms` at most.
template <class Done>
bool spinUntil(Done done, int ms = 2000)
{
    QElapsedTimer timer;
    timer.start();
    while (!done() && timer.elapsed() < ms)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    return done();
}

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

TEST(CameraDiscoveryWindows, LinkWindowFailsThenSucceeds)
{
    test::qtApplication();
    ScriptedMessages messages;
    CameraLinkForm form({{"Gate East", "127.0.0.11"}, {"Gate West", "127.0.0.12"}}, messages);
    std::string answer = "{}";
    ToolCall tool = [&answer](const std::string&) {
        std::this_thread::sleep_for(std::chrono::milliseconds(30));
        return ToolOutput{true, answer};
    };
    ui::CameraLinkWindow window(form, tool, nullptr);
    window.start();
    window.refresh();
    ASSERT_EQ(window.cameras->count(), 2);

    window.cameras->setCurrentRow(1);
    window.ok->click();
    EXPECT_FALSE(window.ok->isEnabled() || window.cancel->isEnabled());
    EXPECT_EQ(window.bar->maximum(), 0);
    ASSERT_TRUE(spinUntil([&] { return !messages.shown.empty(); }));
    EXPECT_EQ(messages.shown[0].text, noLinkText());
    EXPECT_TRUE(window.ok->isEnabled() && window.cancel->isEnabled());
    EXPECT_TRUE(window.isVisible());

    answer = "{\"rtsp\":\"rtsp://127.0.0.12/a\"}";
    window.password->setText("pw");
    window.ok->click();
    ASSERT_TRUE(spinUntil([&] { return !window.isVisible(); }));
    EXPECT_EQ(window.result(), QDialog::Accepted);
    EXPECT_EQ(form.link(), "rtsp://admin:pw@127.0.0.12/a");
}

} // namespace
