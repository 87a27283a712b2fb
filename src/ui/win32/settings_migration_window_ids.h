#pragma once
// The controls of the settings migration dialog (resource IDD_SETTINGS_MIGRATION).
#define IDC_MIGRATION_TEXT 1560
#define IDC_MIGRATION_MOVE_FOLDERS 1561
