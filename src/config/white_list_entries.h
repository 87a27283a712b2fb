#pragma once
// What the entry dialogs do to the rows of a plain or one-time list and to
// the nested lists of an extended list. Lists are addressed by their index in
// the table; rows by their ID, nested lists by their position.
#include <cstdint>

#include "config/white_list.h"

namespace vx::config {

// The row of `list` with this ID, or null.
const WhiteListEntry* findListRow(const WhiteList& list, std::int32_t id);

// Results of addListRow.
inline constexpr std::int32_t listRowAdded = 0;
inline constexpr std::int32_t listRowNumberExists = 1;
inline constexpr std::int32_t listRowNoList = 2;

// Appends `row` to a plain or one-time list unless a row has the same `num`
// (exact comparison). The ID is the largest ID plus one, or 0 in an empty
// list, so an ID can come back after the last row was deleted. Makes the
// list dirty. listRowNoList for an index outside the table or an extended
// list.
std::int32_t addListRow(WhiteListTable& table, std::int32_t listIndex, WhiteListEntry row);

// Puts the texts and times of `row` into the row with this ID, which keeps
// its ID. No test for a repeated plate. Makes the list dirty.
// False when there is no such row.
bool replaceListRow(WhiteListTable& table, std::int32_t listIndex, std::int32_t id,
                    const WhiteListEntry& row);

// Plain or one-time list: removes the row with this ID and makes the list
// dirty. Extended list: removes the nested list at position `id`, and the
// list does not become dirty. False when nothing was removed.
bool deleteListRow(WhiteListTable& table, std::int32_t listIndex, std::int32_t id);

// Appends `nested` to an extended list, makes it dirty and resolves the
// names again. False when the list isn't an extended one.
bool addNestedList(WhiteListTable& table, std::int32_t listIndex, const NestedList& nested);

// Replaces the nested list at `position`, makes the list dirty and
// resolves the names again. False when there is no such nested list.
bool replaceNestedList(WhiteListTable& table, std::int32_t listIndex, std::int32_t position,
                       const NestedList& nested);

} // namespace vx::config
