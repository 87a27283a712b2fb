#pragma once
// Identifiers of the Windows front end's resources and controls, shared by
// the resource script and the code.
#define IDI_VEXLANE 103
#define IDD_MAIN_DIALOG 111

// The dialogs. Each dialog's controls are named in the ids header of its
// window (stream_window_ids.h, ...).
#define IDD_STREAM 120
#define IDD_RECOGNITION_SERVICE 122
#define IDD_RECOGNITION 124
#define IDD_SIGNALS_REPORTS 126
#define IDD_SIGNAL 128
#define IDD_WHITE_LISTS 130
#define IDD_LIST_ENTRY 131
#define IDD_NESTED_LIST 132
#define IDD_NEW_WHITE_LIST 133
#define IDD_SETTINGS 136
#define IDD_PROCESS_CONTROL 140
#define IDD_CONTROL_SERVICE 142
#define IDD_ABOUT 150
#define IDD_MESSENGERS 153
#define IDD_MESSENGER_CHANNEL 154
#define IDD_CAMERA_SCAN 160
#define IDD_CAMERA_LINK 161
#define IDD_SETTINGS_MIGRATION 170

// The main dialog's buttons, status panels and tile area.
#define IDC_START_ALL 1036
#define IDC_STOP_ALL 1037
#define IDC_MESSENGERS 1038
#define IDC_RECOGNITION 1039
#define IDC_SERVICE_PANEL 1040
#define IDC_TILE_AREA 1041
#define IDC_JOURNAL 1042
#define IDC_STREAM_PANEL 1043
#define IDC_CONTROL 1044
#define IDC_LISTS 1045
#define IDC_WATCH 1087

// The status bar, the timer, the tray icon and its callback message.
#define IDC_STATUS_BAR 11111
#define IDT_TICK 12001
#define IDT_RESERVED 12002
#define ID_TRAY_ICON 1
#define WM_TRAY_CALLBACK 1025

// Menus.
#define IDM_FILE 10001
#define IDM_SETTINGS 10002
#define IDM_EXIT 10003
#define IDM_OPEN_SYSTEM_LOG 10004
#define IDM_OPEN_RECOG_LOG 10005
#define IDM_HELP_FILE 10006
#define IDM_ABOUT 10007
#define IDM_HELP 10008
#define IDM_TRAY_EXIT 11003
#define IDM_TRAY_AUTORUN 11004
