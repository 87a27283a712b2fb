// The white list manager and its dialogs as Win32 dialogs, opened the way
// the "Списки" button opens them and driven with the messages their
// controls take. The forms' own rules are the form tests'.
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

} // namespace

TEST(WhiteListWindows, ListsAreNestedAddedFilledSavedAndWritten)
{
    CapturedStderr quiet;
    dialogs::test::ListsOnDisk disk;
    core::AppState state;
    state.ConfigDirectory = disk.dir();
    DialogScript script([&] {
        HWND d = waitForDialog("Менеджер белых списков");
        ASSERT_TRUE(d);
        choose(d, IDC_WL_LISTS, dialogs::test::ListsOnDisk::extended);
        EXPECT_EQ(cellText(d, IDC_WL_ROWS, 0, 1), "Въезд");

        click(d, IDC_WL_ADD_ROW);
        HWND n = waitForDialog("Добавить список в расширенный список");
        ASSERT_TRUE(n);
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
        EXPECT_EQ(cellText(d, IDC_WL_ROWS, 3, 2), "0,6");
        EXPECT_EQ(cellText(d, IDC_WL_ROWS, 3, 3), "06:30:00");
        click(d, IDC_WL_SAVE_LIST);
        EXPECT_NE(answerMessageBox("Сообщение"), "");

        click(d, IDC_WL_ADD_LIST);
        n = waitForDialog("Добавление нового белого списка");
        ASSERT_TRUE(n);
        shoot(n, "new_white_list");
        typeText(n, IDC_NEW_LIST_NAME, "Склад");
        click(n, IDOK);
        EXPECT_TRUE(waitGone(n));
        ASSERT_TRUE(becomes([&] { return selectedIndex(d, IDC_WL_LISTS) == 4; }));

        click(d, IDC_WL_ADD_ROW);
        HWND e = waitForDialog("Добавить номер");
        ASSERT_TRUE(e);
        shoot(e, "list_entry");
        typeText(e, IDC_ENTRY_NUM, "а123вс");
        typeText(e, IDC_ENTRY_ADD, "гость");
        click(e, IDOK);
        EXPECT_TRUE(waitGone(e));
        ASSERT_TRUE(becomes([&] { return rowCount(d, IDC_WL_ROWS) == 1; }));
        EXPECT_EQ(cellText(d, IDC_WL_ROWS, 0, 1), "А123ВС");
        EXPECT_NEAR(columnWidth(d, IDC_WL_ROWS, 1), clientWidth(d, IDC_WL_ROWS) * 0.28, 1.5);
        shoot(d, "white_lists");
        click(d, IDC_WL_SAVE_LIST);
        EXPECT_EQ(answerMessageBox("Сообщение"), "Сохранен список Склад!");
        click(d, IDOK);   // nothing unsaved: it closes
        EXPECT_TRUE(waitGone(d));
    });
    const config::WhiteListTable kept = config::whiteListTable();
    dialogs::whiteListManagerState() = {};
    core::editWhiteLists(state, [&state] { ui::win32::runWhiteListManager(nullptr, state); });
    config::whiteListTable() = kept;
    dialogs::whiteListManagerState() = {};
    ASSERT_TRUE(script.finished());

    // The list as the Windows build writes it, line ends and all, under the
    // first free name.
    const std::filesystem::path folder = disk.dir();
    EXPECT_EQ(readFileBytes(folder / "list3.list.csv"), platform::toTextMode("ID,num,car,add\n0,А123ВС,,гость,\n"));
}
