// The stream dialog's window on the offscreen platform: the widgets carry
// the operator's clicks and typing to the form, and "Готово" stores the record.
#include <gtest/gtest.h>

#include <QCheckBox>
#include <QLineEdit>
#include <QPushButton>

#include "config/text_codec.h"
#include "dialogs/messages.h"
#include "support/qt_application.h"
#include "ui/qt/qt_text.h"
#include "ui/qt/stream_window.h"

using namespace vx;
using vx::ui::literal;

TEST(StreamWindow, WidgetsCarryTheEditsAndGotovoStoresTheRecord)
{
    test::qtApplication();
    config::CameraCommon record;
    record.videoPath = "rtsp://old";
    record.videoChunk = 60;
    record.xWindow = 42;
    dialogs::ScriptedMessages messages;
    dialogs::StreamForm form(record, true, messages);
    form.findLink = [] { return std::optional<std::string>("rtsp://found"); };
    ui::StreamWindow window(form, nullptr);
    window.start();
    EXPECT_EQ(window.fps->text(), "5");
    EXPECT_FALSE(window.secondsToReconnect->isEnabled());

    window.reconnect->click();
    EXPECT_TRUE(window.secondsToReconnect->isEnabled());
    window.findCamera->click();
    EXPECT_EQ(window.videoPath->text(), "rtsp://found");
    window.videoName->setText(literal("Въезд"));
    window.fps->setText("12.5");
    window.ok->click();

    EXPECT_TRUE(messages.shown.empty());
    EXPECT_EQ(window.result(), QDialog::Accepted);
    EXPECT_EQ(record.videoPath, "rtsp://found");
    EXPECT_EQ(record.videoName, config::utf8ToCp1251("Въезд"));
    EXPECT_FLOAT_EQ(record.fps, 12.5f);
    EXPECT_TRUE(record.reconnect);
    EXPECT_EQ(record.xWindow, 42);
}
