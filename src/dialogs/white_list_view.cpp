#include "dialogs/white_list_view.h"

#include <algorithm>
#include <functional>

#include "config/json_text.h"
#include "config/text_codec.h"

namespace vx::dialogs {

using config::utf8ToCp1251;
using config::WhiteListEntry;

std::vector<TableColumn> whiteListColumns(std::int32_t kind)
{
    auto column = [](const char* title, double share, bool centred) {
        return TableColumn{utf8ToCp1251(title), share, centred};
    };
    if (kind == config::oneTimeListKind)
        return {column("ID", 0.05, false), column("Номер", 0.18, true),
                column("Автомобиль", 0.18, true), column("Дополнительные сведения", 0.28, true),
                column("Начальное время", 0.15, true), column("Конечное время", 0.0, true)};
    if (kind == config::extendedListKind)
        return {column("ID", 0.05, false), column("Имя списка", 0.28, true),
                column("Разрешенные дни", 0.28, true), column("Начальное время", 0.19, true),
                column("Конечное время", 0.0, true)};
    return {column("ID", 0.05, false), column("Номер", 0.28, true), column("Автомобиль", 0.28, true),
            column("Дополнительные сведения", 0.0, true)};
}

std::string whiteListKindText(std::int32_t kind)
{
    if (kind == config::oneTimeListKind)
        return utf8ToCp1251("Белый список для разовых посещений");
    if (kind == config::extendedListKind)
        return utf8ToCp1251("Расширенный список, состоящий из нескольких обычных списков с правилами");
    return utf8ToCp1251("Обычный белый список");
}

std::string addRowCaption(std::int32_t kind)
{
    return utf8ToCp1251(kind == config::extendedListKind ? "Добавить вложенный список" : "Добавить номер");
}

std::string deleteRowCaption(std::int32_t kind)
{
    return utf8ToCp1251(kind == config::extendedListKind ? "Удалить вложенный список" : "Удалить номер");
}

namespace {

// The text key of a sort state's column, or null for the ID and for columns
// that aren't sorted.
const std::string* textKey(const WhiteListEntry& row, std::int32_t column)
{
    switch (column) {
    case 1: return &row.num;
    case 2: return &row.car;
    case 3: return &row.add;
    default: return nullptr;
    }
}

std::vector<const WhiteListEntry*> sortedRows(const config::WhiteList& list, std::int32_t sortState)
{
    std::vector<const WhiteListEntry*> rows;
    for (const WhiteListEntry& row : list.entries)
        rows.push_back(&row);
    if (sortState < 0 || sortState > 7)
        return rows;
    const std::int32_t column = sortState / 2;
    const bool descending = (sortState & 1) != 0;
    // std::string compares with char_traits<char>, which orders bytes as
    // unsigned and puts a prefix first.
    std::function<bool(const WhiteListEntry*, const WhiteListEntry*)> less;
    if (column == 0)
        less = [](const WhiteListEntry* a, const WhiteListEntry* b) { return a->ID < b->ID; };
    else
        less = [column](const WhiteListEntry* a, const WhiteListEntry* b) {
            return textKey(*a, column)->compare(*textKey(*b, column)) < 0;
        };
    if (descending)
        std::stable_sort(rows.begin(), rows.end(),
                         [&less](const WhiteListEntry* a, const WhiteListEntry* b) { return less(b, a); });
    else
        std::stable_sort(rows.begin(), rows.end(), less);
    return rows;
}

} // namespace

std::vector<std::vector<std::string>> whiteListRows(const config::WhiteList& list, std::int32_t sortState)
{
    std::vector<std::vector<std::string>> rows;
    if (list.extended) {
        for (std::size_t i = 0; i < list.lists.size(); ++i) {
            const config::NestedList& nested = list.lists[i];
            const std::string days = nested.permitted_access_days == "all_days"
                                         ? utf8ToCp1251("Все дни")
                                         : nested.permitted_access_days;
            rows.push_back({std::to_string(i), shownListName(nested.name), days, nested.permitted_access_time1,
                            nested.permitted_access_time2});
        }
        return rows;
    }
    for (const WhiteListEntry* row : sortedRows(list, sortState)) {
        std::vector<std::string> cells{std::to_string(row->ID), row->num, row->car, row->add};
        if (list.oneTime) {
            cells.push_back(row->time1);
            cells.push_back(row->time2);
        }
        rows.push_back(std::move(cells));
    }
    return rows;
}

std::string shownListName(const std::string& storedName)
{
    return config::unescapeJsonText(storedName);
}

} // namespace vx::dialogs
