#pragma once
// Drives a report list view of a dialog as the operator would, from the
// script's thread: its rows and cells as shown, a row selected by a click,
// a double click on a row, a click on a column's header. Texts are UTF-8.
#include <windows.h>

#include <string>

namespace vx::test {

int rowCount(HWND dialog, int id);
int columnCount(HWND dialog, int id);
std::string cellText(HWND dialog, int id, int row, int column);
std::string columnTitle(HWND dialog, int id, int column);
// Width of a column in pixels, and the view's client width.
int columnWidth(HWND dialog, int id, int column);
int clientWidth(HWND dialog, int id);

// Selects the row alone; the view tells its dialog of the change.
void selectRow(HWND dialog, int id, int row);
// A double click in the middle of the row's first cell, posted: what it
// opens must not hold the driver.
void doubleClickRow(HWND dialog, int id, int row);
// A click on the header of `column`, as the view reports it to its dialog.
void clickColumn(HWND dialog, int id, int column);

} // namespace vx::test
