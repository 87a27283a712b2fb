#pragma once
// The controls of the white list manager (IDD_WHITE_LISTS) and of the three
// dialogs it opens (IDD_NEW_WHITE_LIST, IDD_LIST_ENTRY, IDD_NESTED_LIST).
// The manager closes by IDOK ("Закрыть"), the others by IDOK and IDCANCEL.

// The manager.
#define IDC_WL_LISTS 1601
#define IDC_WL_KIND_TEXT 1602
#define IDC_WL_DELETE_LIST 1603
#define IDC_WL_ADD_LIST 1604
#define IDC_WL_SAVE_LIST 1605
#define IDC_WL_ADD_ROW 1606
#define IDC_WL_DELETE_ROW 1607
#define IDC_WL_ROWS 1608

// One row of a plain or one-time list.
#define IDC_ENTRY_NUM 1620
#define IDC_ENTRY_CAR 1621
#define IDC_ENTRY_ADD 1622
#define IDC_ENTRY_DATE1 1623
#define IDC_ENTRY_TIME1 1624
#define IDC_ENTRY_DATE2 1625
#define IDC_ENTRY_TIME2 1626

// One nested list of an extended list; the day checks run from Monday to
// Sunday.
#define IDC_NESTED_LIST 1640
#define IDC_NESTED_EVERY_DAY 1641
#define IDC_NESTED_WEEK_DAYS 1642
#define IDC_NESTED_ONE_DATE 1643
#define IDC_NESTED_DAY_0 1644
#define IDC_NESTED_DAY_1 1645
#define IDC_NESTED_DAY_2 1646
#define IDC_NESTED_DAY_3 1647
#define IDC_NESTED_DAY_4 1648
#define IDC_NESTED_DAY_5 1649
#define IDC_NESTED_DAY_6 1650
#define IDC_NESTED_DATE 1651
#define IDC_NESTED_TIME1 1652
#define IDC_NESTED_TIME2 1653

// A new list: its name and kind.
#define IDC_NEW_LIST_NAME 1680
#define IDC_NEW_LIST_PLAIN 1681
#define IDC_NEW_LIST_ONE_TIME 1682
#define IDC_NEW_LIST_EXTENDED 1683
