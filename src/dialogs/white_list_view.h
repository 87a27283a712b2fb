#pragma once
// What the white list manager's report view shows of one list: the header
// set of each kind, the kind texts and button captions, and the rows in the
// order of the sort state.
#include <cstdint>
#include <string>
#include <vector>

#include "config/white_list.h"
#include "dialogs/form_fields.h"

namespace vx::dialogs {

// A list's name as the operator typed it: the table keeps it escaped.
std::string shownListName(const std::string& storedName);

// Columns of the view for a list kind (plain, one-time, extended).
std::vector<TableColumn> whiteListColumns(std::int32_t kind);

// The text beside the combo box naming the kind.
std::string whiteListKindText(std::int32_t kind);

// Captions of the add and delete buttons for a kind.
std::string addRowCaption(std::int32_t kind);
std::string deleteRowCaption(std::int32_t kind);

// The rows of a plain or one-time list, sorted on a copy: sort state 0/1 by
// ID, 2/3 by number, 4/5 by vehicle, 6/7 by extra information, even states
// ascending, odd descending; texts compare as unsigned bytes. Any other
// state keeps the stored order. One-time lists show the two times as well.
// The rows of an extended list are its nested lists by position, never
// sorted.
std::vector<std::vector<std::string>> whiteListRows(const config::WhiteList& list,
                                                    std::int32_t sortState);

} // namespace vx::dialogs
