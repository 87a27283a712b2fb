#include "config/white_list.h"

namespace vx::config {

std::int32_t whiteListKind(const WhiteList& list) {
    if (list.extended) return extendedListKind;
    if (list.oneTime) return oneTimeListKind;
    return plainListKind;
}

WhiteListTable& whiteListTable() {
    static WhiteListTable table;
    return table;
}

std::mutex& whiteListLock() {
    static std::mutex lock;
    return lock;
}

WhiteListLookup& lookupOf(WhiteListTable& table, std::size_t index) {
    if (table.lookups.size() <= index) table.lookups.resize(index + 1);
    return table.lookups[index];
}

std::string plateWithoutMasks(const std::string& num) {
    std::string result;
    for (char c : num)
        if (c != '*' && c != '[' && c != ']' && c != '|') result += c;
    return result;
}

void resolveExtendedWhiteLists(WhiteListTable& table) {
    for (std::size_t i = 0; i < table.lists.size(); ++i) {
        WhiteList& list = table.lists[i];
        if (!list.extended) continue;
        list.listIndexes.assign(list.lists.size(), -1);
        for (std::size_t n = 0; n < list.lists.size(); ++n) {
            NestedList& nested = list.lists[n];
            for (std::size_t k = 0; k < table.lists.size(); ++k) {
                if (k == i || table.lists[k].file != nested.file) continue;
                if (!table.lists[k].extended) {   // extended lists don't nest
                    list.listIndexes[n] = static_cast<std::int32_t>(k);
                    nested.name = table.lists[k].name;
                }
                break;
            }
        }
    }
}

} // namespace vx::config
