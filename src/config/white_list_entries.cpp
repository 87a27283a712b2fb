#include "config/white_list_entries.h"

#include <algorithm>

namespace vx::config {
namespace {

WhiteList* listAt(WhiteListTable& table, std::int32_t index) {
    if (index < 0 || static_cast<std::size_t>(index) >= table.lists.size()) return nullptr;
    return &table.lists[index];
}

WhiteList* extendedListAt(WhiteListTable& table, std::int32_t index) {
    WhiteList* list = listAt(table, index);
    return list && list->extended ? list : nullptr;
}

} // namespace

const WhiteListEntry* findListRow(const WhiteList& list, std::int32_t id) {
    for (const WhiteListEntry& row : list.entries)
        if (row.ID == id) return &row;
    return nullptr;
}

std::int32_t addListRow(WhiteListTable& table, std::int32_t listIndex, WhiteListEntry row) {
    WhiteList* list = listAt(table, listIndex);
    if (!list || list->extended) return listRowNoList;
    for (const WhiteListEntry& existing : list->entries)
        if (existing.num == row.num) return listRowNumberExists;
    // The largest ID plus one, so a list reordered by hand gets no second
    // row with an ID it holds. An ID of 2147483647 read from a file wraps to
    // the lowest one rather than overflow.
    std::int32_t largest = -1;
    for (const WhiteListEntry& existing : list->entries) largest = std::max(largest, existing.ID);
    row.ID = static_cast<std::int32_t>(static_cast<std::uint32_t>(largest) + 1u);
    list->entries.push_back(std::move(row));
    list->dirty = true;
    return listRowAdded;
}

bool replaceListRow(WhiteListTable& table, std::int32_t listIndex, std::int32_t id,
                    const WhiteListEntry& row) {
    WhiteList* list = listAt(table, listIndex);
    if (!list) return false;
    for (WhiteListEntry& existing : list->entries) {
        if (existing.ID != id) continue;
        existing = row;
        existing.ID = id;
        list->dirty = true;
        return true;
    }
    return false;
}

bool deleteListRow(WhiteListTable& table, std::int32_t listIndex, std::int32_t id) {
    WhiteList* list = listAt(table, listIndex);
    if (!list) return false;
    if (list->extended) {
        if (id < 0 || static_cast<std::size_t>(id) >= list->lists.size()) return false;
        list->lists.erase(list->lists.begin() + id);
        if (static_cast<std::size_t>(id) < list->listIndexes.size())
            list->listIndexes.erase(list->listIndexes.begin() + id);
        return true;
    }
    const auto found = std::find_if(list->entries.begin(), list->entries.end(),
                                    [id](const WhiteListEntry& row) { return row.ID == id; });
    if (found == list->entries.end()) return false;
    list->entries.erase(found);
    list->dirty = true;
    return true;
}

bool addNestedList(WhiteListTable& table, std::int32_t listIndex, const NestedList& nested) {
    WhiteList* list = extendedListAt(table, listIndex);
    if (!list) return false;
    list->lists.push_back(nested);
    list->dirty = true;
    resolveExtendedWhiteLists(table);
    return true;
}

bool replaceNestedList(WhiteListTable& table, std::int32_t listIndex, std::int32_t position,
                       const NestedList& nested) {
    WhiteList* list = extendedListAt(table, listIndex);
    if (!list || position < 0 || static_cast<std::size_t>(position) >= list->lists.size()) return false;
    list->lists[position] = nested;
    list->dirty = true;
    resolveExtendedWhiteLists(table);
    return true;
}

} // namespace vx::config
