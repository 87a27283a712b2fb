// The stream dialog's window on the offscreen platform: the widgets carry
// the operator's clicks and typing to the form and show its enable rules.
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

TEST(StreamWindow, WidgetsFollowTheFormAndGotovoStoresTheRecord)
{
    test::qtApplication();
    config::CameraCommon record;
    record.videoPath = "rtsp://old";
    record.videoChunk = 60;
    record.decodeNvidia = true;
    record.decodeDirectX = true;
    record.xWindow = 42;
    dialogs::ScriptedMessages messages;
    dialogs::StreamForm form(record, true, messages);
    form.findLink = [] { return std::optional<std::string>("rtsp://found"); };
    ui::StreamWindow window(form, nullptr);
    window.start();

    EXPECT_EQ(window.windowTitle(), literal("Добавить видеопоток"));
    EXPECT_EQ(window.ok->text(), literal("Готово"));
    EXPECT_EQ(window.fps->text(), "5");
    EXPECT_FALSE(window.secondsToReconnect->isEnabled());
    EXPECT_FALSE(window.videoChunk->isEnabled());
    EXPECT_TRUE(window.decodeNvidia->isChecked());
    EXPECT_TRUE(window.decodeDirectX->isChecked());

    window.reconnect->click();
    EXPECT_TRUE(window.secondsToReconnect->isEnabled());
    window.writeVideo->click();
    EXPECT_TRUE(window.videoChunk->isEnabled());
    EXPECT_FALSE(window.writeTransport->isEnabled());
    window.writeOnlyNumObj->click();
    EXPECT_TRUE(window.writeTransport->isEnabled());
    window.decodeDirectX->click();
    EXPECT_FALSE(window.decodeNvidia->isChecked());
    EXPECT_FALSE(window.decodeDirectX->isChecked());

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
    EXPECT_TRUE(record.writeOnlyNumObj);
    EXPECT_FALSE(record.decodeNvidia);
    EXPECT_EQ(record.xWindow, 42);
}
