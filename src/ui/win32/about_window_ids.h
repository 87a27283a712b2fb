#pragma once
// The controls of the About dialog (resource IDD_ABOUT).
#define IDC_ABOUT_ICON 1540
#define IDC_ABOUT_TEXT 1541
