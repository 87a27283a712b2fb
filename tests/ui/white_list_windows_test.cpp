// The white list windows on the offscreen platform: the widgets carry what
// the operator does to the forms and show what the forms hold. The forms'
// own rules are the form tests' business.
#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTableWidget>
#include <QTimeEdit>
#include <QTimer>

#include "support/qt_application.h"
#include "../dialogs/white_list_fixture.h"
#include "ui/qt/qt_text.h"
#include "ui/qt/white_list_windows.h"

using namespace vx;
using namespace vx::dialogs;
using namespace vx::dialogs::test;
using vx::ui::literal;

namespace {

class WindowsTest : public ::testing::Test {
protected:
    WindowsTest()
    {
        vx::test::qtApplication();
        config::loadAllWhiteLists(table, disk.dir());
    }
    vx::test::CapturedStderr quiet;
    ListsOnDisk disk;
    config::WhiteListTable table;
    ScriptedMessages messages;
};

} // namespace

TEST_F(WindowsTest, NewListWindowAddsTheTypedListOfTheClickedKind)
{
    NewWhiteListForm form(table, disk.dir(), messages);
    ui::NewWhiteListWindow window(form, nullptr);
    window.start();
    window.name->setText(literal("Гости"));
    window.kinds[1]->click();
    window.ok->click();
    EXPECT_EQ(window.result(), QDialog::Accepted);
    EXPECT_EQ(table.lists.back().name, cp("Гости"));
    EXPECT_TRUE(table.lists.back().oneTime);
}

TEST_F(WindowsTest, NestedWindowStoresTheChosenListDaysAndTime)
{
    NestedListForm form(table, ListsOnDisk::extended, -1, messages, fixedNow);
    ui::NestedListWindow window(form, nullptr);
    window.start();
    window.list->setCurrentIndex(1);
    window.list->activated(1);
    window.dayRules[1]->click();
    window.days[4]->click();
    window.days[1]->click();
    window.time1->setTime(QTime(6, 30, 0));
    window.ok->click();
    const config::NestedList& added = table.lists[ListsOnDisk::extended].lists.back();
    EXPECT_EQ(added.name, cp("Въезд"));
    EXPECT_EQ(added.permitted_access_days, "1,4");
    EXPECT_EQ(added.permitted_access_time1, "06:30:00");
}

TEST_F(WindowsTest, ManagerWindowShowsListsAddsARowThroughItsDialogAndSaves)
{
    WhiteListManagerState state;
    WhiteListCompanions companions;
    // The entry window runs modal over the manager (its pickers bind as the
    // nested window's do); the safety close keeps the test from waiting for
    // ever if OK doesn't close it.
    companions.entry = [](ListEntryForm& form) {
        ui::ListEntryWindow window(form, QApplication::activeWindow());
        QTimer::singleShot(0, &window, [&window] {
            window.num->setText("m5");
            window.ok->click();
        });
        QTimer::singleShot(5000, &window, [&window] { window.reject(); });
        return window.run() == QDialog::Accepted;
    };
    WhiteListManagerForm form(table, disk.dir(), state, messages, companions, fixedNow);
    ui::WhiteListManagerWindow window(form, nullptr);
    window.start();
    QApplication::processEvents();
    EXPECT_EQ(window.lists->count(), 4);
    window.lists->setCurrentIndex(ListsOnDisk::plain);
    window.lists->activated(ListsOnDisk::plain);
    EXPECT_EQ(window.view->rowCount(), 3);
    EXPECT_NEAR(window.view->columnWidth(1), window.view->viewport()->width() * 0.28, 1.5);

    window.addRow->click();
    EXPECT_EQ(window.view->rowCount(), 4);
    EXPECT_EQ(window.view->item(3, 1)->text(), "M5");
    window.saveList->click();
    EXPECT_NE(disk.bytes(table.lists[ListsOnDisk::plain].file).find("3,M5,,,\n"), std::string::npos);
    window.close->click();   // nothing dirty: closes
    EXPECT_FALSE(window.isVisible());
}
