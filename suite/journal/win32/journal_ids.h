#pragma once
// The journal viewer's window (a dialog resource) and its controls.
#define IDD_JOURNAL 100
#define IDC_FILE_LABEL 1001
#define IDC_FILES 1002
#define IDC_LEVEL_LABEL 1003
#define IDC_LEVEL 1004
#define IDC_SEARCH 1005
#define IDC_COPY 1006
#define IDC_LINES 1007
#define IDC_COUNTS 1008
// The list's context menu.
#define IDM_COPY 1101
#define IDM_SELECT_ALL 1102
