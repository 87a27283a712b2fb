#pragma once
// The controls of the two waiting dialogs of camera discovery. "Отмена" is
// IDCANCEL in both, "OK" of the link dialog IDOK.
#define IDC_CAMERA_SCAN_BAR 1701
#define IDC_CAMERA_LINK_LIST 1711
#define IDC_CAMERA_LINK_PROMPT 1712
#define IDC_CAMERA_LINK_LOGIN 1713
#define IDC_CAMERA_LINK_PASSWORD 1714
#define IDC_CAMERA_LINK_BAR 1715
