#pragma once
// Reads a report list view of a dialog from the script's thread: its rows
// and cells as shown, the widths of its columns. Texts are UTF-8.
#include <windows.h>

#include <string>

namespace vx::test {

int rowCount(HWND dialog, int id);
std::string cellText(HWND dialog, int id, int row, int column);
// Width of a column in pixels, and the view's client width.
int columnWidth(HWND dialog, int id, int column);
int clientWidth(HWND dialog, int id);

} // namespace vx::test
