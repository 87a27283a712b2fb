// The white list windows on the offscreen platform: the widgets carry what
// the operator does to the forms and show what the forms hold. The forms'
// own rules are the form tests' business.
#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
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
    ASSERT_EQ(table.lists.size(), 5u);
    EXPECT_EQ(table.lists[4].name, cp("Гости"));
    EXPECT_TRUE(table.lists[4].oneTime);
}

TEST_F(WindowsTest, EntryWindowTakesTheTypedRowAndThePickers)
{
    ListEntryForm form(table, ListsOnDisk::oneTime, config::oneTimeListKind, 0, messages, fixedNow);
    ui::ListEntryWindow window(form, nullptr);
    window.start();
    EXPECT_EQ(window.num->text(), "K1");
    EXPECT_EQ(window.time1->time(), QTime(8, 5, 0));
    window.car->setText("Niva");
    window.date2->setDate(QDate(2030, 1, 2));
    window.time2->setTime(QTime(17, 45, 10));
    window.ok->click();
    EXPECT_EQ(window.result(), QDialog::Accepted);
    const config::WhiteListEntry& edited = table.lists[ListsOnDisk::oneTime].entries[0];
    EXPECT_EQ(edited.car, "Niva");
    EXPECT_EQ(edited.time2, "2030-01-02 17:45:10");
}

TEST_F(WindowsTest, NestedWindowStoresTheChosenListDaysAndTime)
{
    NestedListForm form(table, ListsOnDisk::extended, -1, messages, fixedNow);
    ui::NestedListWindow window(form, nullptr);
    window.start();
    window.list->setCurrentIndex(1);
    window.list->activated(1);
    window.dayRules[1]->click();
    EXPECT_TRUE(window.days[0]->isEnabled());
    window.days[4]->click();
    window.days[1]->click();
    window.time1->setTime(QTime(6, 30, 0));
    window.ok->click();
    EXPECT_EQ(window.result(), QDialog::Accepted);
    const config::NestedList& added = table.lists[ListsOnDisk::extended].lists.back();
    EXPECT_EQ(added.name, cp("Въезд"));
    EXPECT_EQ(added.permitted_access_days, "1,4");
    EXPECT_EQ(added.permitted_access_time1, "06:30:00");
}

TEST_F(WindowsTest, ManagerWindowShowsListsAddsARowThroughItsDialogAndSaves)
{
    WhiteListManagerState state;
    WhiteListCompanions companions;
    // The entry dialog runs modal over the manager; the safety close keeps
    // the test from waiting for ever if OK doesn't close it.
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

    // A double click on a row of the view edits that row.
    std::int32_t editedId = -2;
    companions.entry = [&](ListEntryForm& entry) {
        editedId = entry.rowId();
        return false;
    };
    WhiteListManagerForm second(table, disk.dir(), state, messages, companions, fixedNow);
    ui::WhiteListManagerWindow other(second, nullptr);
    other.start();
    other.lists->activated(ListsOnDisk::plain);
    other.view->cellDoubleClicked(1, 2);
    EXPECT_EQ(editedId, 1);
    other.reject();

    window.close->click();   // nothing dirty: closes
    EXPECT_FALSE(window.isVisible());
}
