#pragma once
// White lists on disk for the dialog tests: "Empty", a plain list, a
// one-time list and an extended list nesting the first two, written through
// the config layer's own operations.
#include <string>

#include "config/white_list.h"
#include "config/white_list_entries.h"
#include "config/white_list_file.h"
#include "config/white_list_registry.h"
#include "support/text_file.h"
#include "support/captured_stderr.h"
#include "support/temp_dir.h"
#include "form_test.h"

namespace vx::dialogs::test {

inline config::WhiteListEntry row(const std::string& num, const std::string& car = "",
                                  const std::string& add = "")
{
    config::WhiteListEntry entry;
    entry.num = num;
    entry.car = car;
    entry.add = add;
    entry.time1 = "2024-03-01 08:05:00";
    entry.time2 = "2024-03-02 09:00:00";
    return entry;
}

class ListsOnDisk {
public:
    // Indexes in the table after a load.
    static constexpr std::int32_t empty = 0, plain = 1, oneTime = 2, extended = 3;

    ListsOnDisk()
    {
        config::WhiteListTable table;
        config::loadAllWhiteLists(table, dir());
        config::addWhiteList(table, dir(), cp("Въезд"), config::plainListKind);
        config::addWhiteList(table, dir(), "Guests", config::oneTimeListKind);
        config::addWhiteList(table, dir(), "Ext", config::extendedListKind);
        // IDs 0, 1, 2 in this stored order; numbers, cars and notes so that
        // each column sorts differently.
        config::addListRow(table, plain, row("B200", "Volvo", "z"));
        config::addListRow(table, plain, row(cp("Я100"), "audi", "a"));
        config::addListRow(table, plain, row("A300", "Zil", "m"));
        config::addListRow(table, oneTime, row("K1"));
        config::addListRow(table, oneTime, row("E2"));
        config::NestedList nested;
        nested.file = table.lists[plain].file;
        config::addNestedList(table, extended, nested);
        nested.file = table.lists[oneTime].file;
        nested.permitted_access_days = "0,2";
        nested.permitted_access_time1 = "08:05:00";
        config::addNestedList(table, extended, nested);
        nested.permitted_access_days = "2024-03-01";
        config::addNestedList(table, extended, nested);
        for (std::int32_t i = plain; i <= extended; ++i)
            config::saveWhiteList(table, dir(), i);
    }

    std::string dir() const { return folder_.path().string(); }
    // The written text, line ends as "\n" (see support/text_file.h).
    std::string bytes(const std::string& name) const { return vx::test::readText(folder_.path() / name); }

private:
    vx::test::TempDir folder_;
};

} // namespace vx::dialogs::test
