// The white list windows on the offscreen platform: the widgets carry what
// the operator does to the forms and show what the forms hold.
#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTableWidget>
#include <QTimeEdit>
#include <QTimer>
#include <cstdlib>

#include "support/qt_application.h"
#include "../dialogs/white_list_fixture.h"
#include "ui/qt/qt_text.h"
#include "ui/qt/white_list_windows.h"

using namespace vx;
using namespace vx::dialogs;
using namespace vx::dialogs::test;
using vx::ui::literal;

namespace {

void ensureApplication() { vx::test::qtApplication(); }

// Runs `drive` once the modal window `run` opens is up; the safety close
// keeps a test from waiting for ever if the default button doesn't close it.
template <typename Window>
bool runDriven(Window& window, std::function<void(Window&)> drive)
{
    QTimer::singleShot(0, &window, [&window, drive] { drive(window); });
    QTimer::singleShot(5000, &window, [&window] { window.reject(); });
    return window.run() == QDialog::Accepted;
}

class WindowsTest : public ::testing::Test {
protected:
    WindowsTest()
    {
        ensureApplication();
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
    EXPECT_EQ(window.windowTitle(), literal("Добавление нового белого списка"));
    EXPECT_TRUE(window.kinds[0]->isChecked());
    EXPECT_EQ(window.name->maxLength(), 255);
    EXPECT_EQ(window.ok->text(), literal("ОК"));
    window.name->setText(literal("Гости"));
    window.kinds[1]->click();
    EXPECT_EQ(form.kind.chosen, 1);
    window.ok->click();
    EXPECT_EQ(window.result(), QDialog::Accepted);
    ASSERT_EQ(table.lists.size(), 5u);
    EXPECT_EQ(table.lists[4].name, cp("Гости"));
    EXPECT_TRUE(table.lists[4].oneTime);
    EXPECT_NE(disk.bytes(config::whiteListsRegistryFile).find("Гости"), std::string::npos);
    EXPECT_EQ(disk.bytes(table.lists[4].file), "ID,num,car,add,time1,time2\n");

    // The same name again: the message, and the window stays open.
    NewWhiteListForm again(table, disk.dir(), messages);
    ui::NewWhiteListWindow second(again, nullptr);
    second.start();
    second.name->setText(literal("Гости"));
    second.ok->click();
    EXPECT_TRUE(second.isVisible());
    ASSERT_EQ(messages.shown.size(), 1u);
    EXPECT_EQ(messages.shown[0].text, cp("Такое имя белого списка уже существует!"));
    second.cancel->click();
    EXPECT_FALSE(second.isVisible());
}

TEST_F(WindowsTest, EntryWindowTakesTheTypedRowIntoTheList)
{
    ListEntryForm form(table, ListsOnDisk::plain, config::plainListKind, -1, messages, fixedNow);
    ui::ListEntryWindow window(form, nullptr);
    window.start();
    EXPECT_EQ(window.windowTitle(), literal("Добавить номер"));
    EXPECT_FALSE(window.date1->isEnabled());
    EXPECT_FALSE(window.time2->isEnabled());
    EXPECT_EQ(window.date1->date(), QDate(2025, 6, 14));
    window.num->setText(literal("о777оо"));
    window.car->setText("Niva");
    window.ok->click();
    EXPECT_EQ(window.result(), QDialog::Accepted);
    const config::WhiteListEntry& added = table.lists[ListsOnDisk::plain].entries.back();
    EXPECT_EQ(added.num, cp("О777ОО"));
    EXPECT_EQ(added.car, "Niva");
    config::saveWhiteList(table, disk.dir(), ListsOnDisk::plain);
    EXPECT_NE(disk.bytes(table.lists[ListsOnDisk::plain].file).find("3,О777ОО,Niva,,\n"), std::string::npos);

    // A one-time row: the pickers carry their values into the form.
    ListEntryForm once(table, ListsOnDisk::oneTime, config::oneTimeListKind, 0, messages, fixedNow);
    ui::ListEntryWindow edit(once, nullptr);
    edit.start();
    EXPECT_EQ(edit.num->text(), "K1");
    EXPECT_EQ(edit.time1->time(), QTime(8, 5, 0));
    edit.date2->setDate(QDate(2030, 1, 2));
    edit.time2->setTime(QTime(17, 45, 10));
    edit.ok->click();
    EXPECT_EQ(table.lists[ListsOnDisk::oneTime].entries[0].time2, "2030-01-02 17:45:10");
}

TEST_F(WindowsTest, NestedWindowEnablesChecksByChoiceAndStoresTheDays)
{
    NestedListForm form(table, ListsOnDisk::extended, -1, messages, fixedNow);
    ui::NestedListWindow window(form, nullptr);
    window.start();
    EXPECT_EQ(window.windowTitle(), literal("Добавить список в расширенный список"));
    EXPECT_EQ(window.list->count(), 3);
    EXPECT_TRUE(window.dayRules[0]->isChecked());
    EXPECT_FALSE(window.days[0]->isEnabled());
    EXPECT_FALSE(window.date->isEnabled());
    EXPECT_EQ(window.time2->time(), QTime(23, 59, 59));

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

    window.dayRules[2]->click();
    EXPECT_FALSE(window.days[1]->isEnabled());
    EXPECT_TRUE(window.days[1]->isChecked());
    EXPECT_TRUE(window.date->isEnabled());
}

TEST_F(WindowsTest, ManagerWindowShowsListsAddsARowThroughItsDialogAndSaves)
{
    WhiteListManagerState state;
    WhiteListCompanions companions;
    companions.entry = [](ListEntryForm& form) {
        ui::ListEntryWindow window(form, QApplication::activeWindow());
        return runDriven<ui::ListEntryWindow>(window, [](ui::ListEntryWindow& w) {
            w.num->setText("m5");
            w.ok->click();
        });
    };
    WhiteListManagerForm form(table, disk.dir(), state, messages, companions, fixedNow);
    ui::WhiteListManagerWindow window(form, nullptr);
    window.start();
    QApplication::processEvents();
    EXPECT_EQ(window.windowTitle(), literal("Менеджер белых списков"));
    EXPECT_EQ(window.lists->count(), 4);
    EXPECT_FALSE(window.addRow->isEnabled());
    EXPECT_EQ(window.addRow->text(), literal("Добавить  номер"));
    EXPECT_TRUE(window.close->isDefault());

    window.lists->setCurrentIndex(ListsOnDisk::plain);
    window.lists->activated(ListsOnDisk::plain);
    EXPECT_TRUE(window.addRow->isEnabled());
    EXPECT_EQ(window.view->rowCount(), 3);
    EXPECT_EQ(window.view->horizontalHeaderItem(1)->text(), literal("Номер"));
    EXPECT_EQ(window.kindText->text(), literal("Обычный белый список"));
    const int client = window.view->viewport()->width();
    EXPECT_NEAR(window.view->columnWidth(1), client * 0.28, 1.5);

    window.view->horizontalHeader()->sectionClicked(1);
    EXPECT_EQ(window.view->item(0, 1)->text(), "A300");
    EXPECT_EQ(window.view->item(0, 0)->textAlignment() & Qt::AlignHorizontal_Mask, Qt::AlignLeft);
    EXPECT_EQ(window.view->item(0, 1)->textAlignment() & Qt::AlignHorizontal_Mask, Qt::AlignHCenter);

    window.addRow->click();
    EXPECT_EQ(window.view->rowCount(), 4);
    EXPECT_EQ(window.view->item(2, 1)->text(), "M5");   // sorted by number

    window.saveList->click();
    EXPECT_NE(disk.bytes(table.lists[ListsOnDisk::plain].file).find("3,M5,,,\n"), std::string::npos);
    EXPECT_EQ(messages.shown.back().text, cp("Сохранен список Въезд!"));

    // A double click on a row of the view edits that row.
    int opened = 0;
    std::int32_t editedId = -2;
    companions.entry = [&](ListEntryForm& entry) {
        ++opened;
        editedId = entry.rowId();
        return false;
    };
    WhiteListManagerForm second(table, disk.dir(), state, messages, companions, fixedNow);
    ui::WhiteListManagerWindow other(second, nullptr);
    other.start();
    other.lists->activated(ListsOnDisk::plain);
    other.view->cellDoubleClicked(1, 2);
    EXPECT_EQ(opened, 1);
    EXPECT_EQ(editedId, 1);
    other.reject();

    window.close->click();   // nothing dirty: closes
    EXPECT_FALSE(window.isVisible());
}

TEST_F(WindowsTest, ManagerScreenshots)
{
    const char* folder = std::getenv("VEXLANE_SCREENSHOT_DIR");
    if (!folder)
        GTEST_SKIP() << "VEXLANE_SCREENSHOT_DIR not set";
    WhiteListManagerState state;
    WhiteListManagerForm form(table, disk.dir(), state, messages, {}, fixedNow);
    ui::WhiteListManagerWindow window(form, nullptr);
    window.start();
    const char* names[] = {"", "manager_plain.png", "manager_one_time.png", "manager_extended.png"};
    for (int index = ListsOnDisk::plain; index <= ListsOnDisk::extended; ++index) {
        window.lists->setCurrentIndex(index);
        window.lists->activated(index);
        QApplication::processEvents();
        EXPECT_TRUE(window.grab().save(QString(folder) + "/" + names[index]));
    }
    NewWhiteListForm newForm(table, disk.dir(), messages);
    ui::NewWhiteListWindow newWindow(newForm, nullptr);
    newWindow.start();
    QApplication::processEvents();
    newWindow.grab().save(QString(folder) + "/new_list.png");
    ListEntryForm entryForm(table, ListsOnDisk::oneTime, config::oneTimeListKind, 0, messages, fixedNow);
    ui::ListEntryWindow entryWindow(entryForm, nullptr);
    entryWindow.start();
    QApplication::processEvents();
    entryWindow.grab().save(QString(folder) + "/entry.png");
    NestedListForm nestedForm(table, ListsOnDisk::extended, 1, messages, fixedNow);
    ui::NestedListWindow nestedWindow(nestedForm, nullptr);
    nestedWindow.start();
    QApplication::processEvents();
    nestedWindow.grab().save(QString(folder) + "/nested.png");
}
