// The white list manager and its dialogs as Win32 dialogs, opened the way
// the "Списки" button opens them and driven with the messages their
// controls take.
#include <gtest/gtest.h>

#include <filesystem>
#include <functional>

#include "config/white_list_registry.h"
#include "core/settings_commands.h"
#include "dialogs/white_list_fixture.h"
#include "dialogs/white_list_manager_form.h"
#include "platform/text_mode.h"
#include "support/win32/dialog_driver.h"
#include "support/win32/list_view_driver.h"
#include "ui/win32/white_list_windows.h"
#include "ui/win32/white_list_windows_ids.h"

using namespace vx;
using namespace vx::test;

namespace {

// True once `holds` does, within `limit`: the manager shows what a closed
// dialog did only after its own modal loop has returned.
bool becomes(const std::function<bool()>& holds, std::chrono::milliseconds limit = 5s)
{
    const auto end = std::chrono::steady_clock::now() + limit;
    while (std::chrono::steady_clock::now() < end) {
        if (holds())
            return true;
        std::this_thread::sleep_for(20ms);
    }
    return holds();
}

// The bytes a list or registry file holds, for a text built with "\n".
std::string onDisk(const std::string& text)
{
    return platform::toTextMode(text);
}

// "Списки" as the main window runs it, over no window. The manager reads
// the process-wide table anew from the test's folder; the other tests get
// theirs back.
void openManager(core::AppState& state)
{
    const config::WhiteListTable kept = config::whiteListTable();
    dialogs::whiteListManagerState() = {};
    core::editWhiteLists(state, [&state] { ui::win32::runWhiteListManager(nullptr, state); });
    config::whiteListTable() = kept;
    dialogs::whiteListManagerState() = {};
}

// Adds a row through "Добавить номер"; the text of the message box it
// shows, or empty when it closed with OK.
std::string addRow(HWND manager, const char* num, const char* car)
{
    click(manager, IDC_WL_ADD_ROW);
    HWND entry = waitForDialog("Добавить номер");
    if (!entry) {
        ADD_FAILURE() << "no entry dialog";
        return {};
    }
    typeText(entry, IDC_ENTRY_NUM, num);
    typeText(entry, IDC_ENTRY_CAR, car);
    click(entry, IDOK);
    if (waitGone(entry, 1s))
        return {};
    const std::string refused = answerMessageBox("Сообщение");
    click(entry, IDCANCEL);
    EXPECT_TRUE(waitGone(entry));
    return refused;
}

} // namespace

TEST(WhiteListWindows, ANewListIsFilledEditedSortedSavedAndWritten)
{
    TempDir root;
    core::AppState state;
    state.ConfigDirectory = root.path().string();
    state.status.set("busy");
    DialogScript script([&] {
        HWND d = waitForDialog("Менеджер белых списков");
        ASSERT_TRUE(d);
        EXPECT_EQ(selectedIndex(d, IDC_WL_LISTS), 0);
        EXPECT_EQ(columnCount(d, IDC_WL_ROWS), 4);
        EXPECT_EQ(columnTitle(d, IDC_WL_ROWS, 3), "Дополнительные сведения");

        click(d, IDC_WL_ADD_LIST);
        HWND n = waitForDialog("Добавление нового белого списка");
        ASSERT_TRUE(n);
        shoot(n, "new_white_list");
        typeText(n, IDC_NEW_LIST_NAME, "Въезд");
        click(n, IDOK);
        EXPECT_TRUE(waitGone(n));
        ASSERT_TRUE(becomes([&] { return selectedIndex(d, IDC_WL_LISTS) == 1; }));
        EXPECT_EQ(shownText(d, IDC_WL_KIND_TEXT), "Обычный белый список");

        click(d, IDC_WL_ADD_ROW);
        HWND e = waitForDialog("Добавить номер");
        ASSERT_TRUE(e);
        shoot(e, "list_entry");
        typeText(e, IDC_ENTRY_NUM, "а123вс");
        typeText(e, IDC_ENTRY_ADD, "гость");
        click(e, IDOK);
        EXPECT_TRUE(waitGone(e));
        EXPECT_EQ(addRow(d, "b7", "Niva"), "");
        EXPECT_EQ(addRow(d, "А123ВС", ""), "Такой номер уже существует!");
        ASSERT_TRUE(becomes([&] { return rowCount(d, IDC_WL_ROWS) == 2; }));
        EXPECT_EQ(cellText(d, IDC_WL_ROWS, 0, 1), "А123ВС");
        EXPECT_EQ(cellText(d, IDC_WL_ROWS, 0, 3), "гость");
        EXPECT_EQ(cellText(d, IDC_WL_ROWS, 1, 0), "1");
        EXPECT_EQ(cellText(d, IDC_WL_ROWS, 1, 1), "B7");
        const int client = clientWidth(d, IDC_WL_ROWS);
        EXPECT_NEAR(columnWidth(d, IDC_WL_ROWS, 1), client * 0.28, 1.5);

        // A double click edits the row it hits.
        doubleClickRow(d, IDC_WL_ROWS, 1);
        e = waitForDialog("Добавить номер");
        ASSERT_TRUE(e);
        EXPECT_EQ(shownText(e, IDC_ENTRY_NUM), "B7");
        EXPECT_EQ(shownText(e, IDC_ENTRY_CAR), "Niva");
        typeText(e, IDC_ENTRY_CAR, "Лада");
        click(e, IDOK);
        EXPECT_TRUE(waitGone(e));
        EXPECT_TRUE(becomes([&] { return cellText(d, IDC_WL_ROWS, 1, 2) == "Лада"; }));

        // By number: the Latin letter's byte comes before the Cyrillic one's.
        clickColumn(d, IDC_WL_ROWS, 1);
        EXPECT_EQ(cellText(d, IDC_WL_ROWS, 0, 1), "B7");
        shoot(d, "white_lists");
        selectRow(d, IDC_WL_ROWS, 1);
        click(d, IDC_WL_DELETE_ROW);
        EXPECT_EQ(rowCount(d, IDC_WL_ROWS), 1);
        EXPECT_EQ(cellText(d, IDC_WL_ROWS, 0, 1), "B7");

        click(d, IDC_WL_SAVE_LIST);
        EXPECT_EQ(answerMessageBox("Сообщение"), "Сохранен список Въезд!");
        click(d, IDOK);   // nothing unsaved: it closes
        EXPECT_TRUE(waitGone(d));
    });
    openManager(state);
    ASSERT_TRUE(script.finished());

    EXPECT_EQ(state.status.get(), "");
    const std::filesystem::path folder = root.path();
    EXPECT_EQ(readFileBytes(folder / "list1.list.csv"), onDisk("ID,num,car,add\n1,B7,Лада,,\n"));
    EXPECT_EQ(readFileBytes(folder / config::whiteListsRegistryFile),
              onDisk("{\n\t\"whitelists\":[\n"
                     "\t\t{\n\t\t\t\"name\":\"Empty\",\n\t\t\t\"file\":\"empty.list.csv\"\n\t\t},\n"
                     "\t\t{\n\t\t\t\"name\":\"Въезд\",\n\t\t\t\"file\":\"list1.list.csv\"\n\t\t}\n"
                     "\t]\n}"));
}

TEST(WhiteListWindows, AnExtendedListNestsAListByDaysAndAsksBeforeLeavingItUnsaved)
{
    CapturedStderr quiet;
    dialogs::test::ListsOnDisk disk;
    core::AppState state;
    state.ConfigDirectory = disk.dir();
    DialogScript script([&] {
        HWND d = waitForDialog("Менеджер белых списков");
        ASSERT_TRUE(d);
        choose(d, IDC_WL_LISTS, dialogs::test::ListsOnDisk::extended);
        EXPECT_EQ(columnTitle(d, IDC_WL_ROWS, 1), "Имя списка");
        EXPECT_EQ(rowCount(d, IDC_WL_ROWS), 3);
        EXPECT_EQ(cellText(d, IDC_WL_ROWS, 0, 1), "Въезд");
        EXPECT_EQ(cellText(d, IDC_WL_ROWS, 0, 2), "Все дни");

        click(d, IDC_WL_ADD_ROW);
        HWND n = waitForDialog("Добавить список в расширенный список");
        ASSERT_TRUE(n);
        click(n, IDOK);   // the zero list can't be nested
        EXPECT_EQ(answerMessageBox("Сообщение"), "Empty список не может быть использован в расширенном!");
        choose(n, IDC_NESTED_LIST, 1);
        click(n, IDC_NESTED_WEEK_DAYS);
        click(n, IDC_NESTED_DAY_6);
        click(n, IDC_NESTED_DAY_0);
        SYSTEMTIME start{};
        start.wYear = 2025;
        start.wMonth = 6;
        start.wDay = 14;
        start.wHour = 6;
        start.wMinute = 30;
        pick(n, IDC_NESTED_TIME1, start);
        shoot(n, "nested_list");
        click(n, IDOK);
        EXPECT_TRUE(waitGone(n));
        ASSERT_TRUE(becomes([&] { return rowCount(d, IDC_WL_ROWS) == 4; }));
        EXPECT_EQ(cellText(d, IDC_WL_ROWS, 3, 0), "3");
        EXPECT_EQ(cellText(d, IDC_WL_ROWS, 3, 2), "0,6");
        EXPECT_EQ(cellText(d, IDC_WL_ROWS, 3, 3), "06:30:00");

        // The nested list is unsaved: "Закрыть" asks, Cancel stays.
        click(d, IDOK);
        EXPECT_EQ(answerMessageBox("Предупреждение", IDCANCEL),
                  "Подвердите, что вы хотите выйти, не сохранив список Ext!");
        EXPECT_TRUE(becomes([&] { return ::IsWindowVisible(d) != FALSE; }));

        choose(d, IDC_WL_LISTS, dialogs::test::ListsOnDisk::oneTime);
        click(d, IDC_WL_DELETE_LIST);
        EXPECT_EQ(answerMessageBox("Предупреждение"), "Вы действительно хотите удалить из файлов список Guests?");
        ASSERT_TRUE(becomes([&] { return selectedIndex(d, IDC_WL_LISTS) == 0; }));
        choose(d, IDC_WL_LISTS, 2);   // "Ext" moved up
        click(d, IDC_WL_SAVE_LIST);
        EXPECT_EQ(answerMessageBox("Сообщение"), "Сохранен список Ext!");
        click(d, IDOK);
        EXPECT_TRUE(waitGone(d));
    });
    openManager(state);
    ASSERT_TRUE(script.finished());

    const std::filesystem::path folder = disk.dir();
    EXPECT_FALSE(std::filesystem::exists(folder / "list2.list.csv"));
    auto nested = [](const char* file, const char* days, const char* time1) {
        return std::string("\t\t{\n\t\t\t\"file\":\"") + file + "\",\n\t\t\t\"permitted_access_days\":\"" + days +
               "\",\n\t\t\t\"permitted_access_time1\":\"" + time1 +
               "\",\n\t\t\t\"permitted_access_time2\":\"23:59:59\"\n\t\t}\n";
    };
    EXPECT_EQ(readFileBytes(folder / "list3.list.json"),
              onDisk("{\n\t\"lists\":[\n" + nested("list1.list.csv", "all_days", "00:00:00") + "\t\t,\n" +
                     nested("list2.list.csv", "0,2", "08:05:00") + "\t\t,\n" +
                     nested("list2.list.csv", "2024-03-01", "08:05:00") + "\t\t,\n" +
                     nested("list1.list.csv", "0,6", "06:30:00") + "\t]\n}"));
    EXPECT_EQ(readFileBytes(folder / config::whiteListsRegistryFile),
              onDisk("{\n\t\"whitelists\":[\n"
                     "\t\t{\n\t\t\t\"name\":\"Empty\",\n\t\t\t\"file\":\"empty.list.csv\"\n\t\t},\n"
                     "\t\t{\n\t\t\t\"name\":\"Въезд\",\n\t\t\t\"file\":\"list1.list.csv\"\n\t\t},\n"
                     "\t\t{\n\t\t\t\"name\":\"Ext\",\n\t\t\t\"file\":\"list3.list.json\"\n\t\t}\n"
                     "\t]\n}"));
}
