// The white list readers: the same bytes read as a CSV list, as an extended
// list and as the registry of lists. A list read back after a save that has
// lost or changed a row ends the run.
#include <filesystem>
#include <string>

#include "config/comma_split.h"
#include "config/plate_normalise.h"
#include "config/white_list_day_rule.h"
#include "config/white_list_file.h"
#include "config/white_list_registry.h"
#include "fuzz_registry.h"
#include "fuzz_support.h"

namespace vx::fuzz {
namespace {

using namespace vx::config;

std::string rowsText(const WhiteList& list) {
    std::string text;
    for (const WhiteListEntry& row : list.entries)
        text += std::to_string(row.ID) + '\x1f' + row.num + '\x1f' + row.car + '\x1f' + row.add + '\n';
    return text;
}

// A file name that stays inside the folder and names no device.
bool plainFileName(const std::string& file) {
    return !file.empty() && file != "." && file != ".." && file.find('/') == std::string::npos &&
           file.find('\\') == std::string::npos;
}

void readAsLists(const std::string& dir, const std::string& input) {
    writeFileBytes(dir + "/a.list.csv", input);
    writeFileBytes(dir + "/b.list.json", input);
    WhiteListTable table;
    table.lists.resize(3);
    table.lists[0].file = "empty.list.csv";
    table.lists[1].file = "a.list.csv";
    table.lists[2].file = "b.list.json";
    saveWhiteListsList(table, dir);
    saveWhiteList(table, dir, 0);
    loadAllWhiteLists(table, dir);
    check(table.lists.size() == 3, "the registry lost a list");

    // A plain or one-time list written back and read again keeps every row,
    // in its order. The lines it couldn't read go back after the rows; under
    // the header the writer puts back, which may order the columns unlike
    // the file's own, such a line may now read as a row of its own.
    const WhiteList& read = table.lists[1];
    if (read.extended) return;
    saveWhiteList(table, dir, 1);
    WhiteListTable again;
    again.lists.resize(1);
    again.lists[0].file = "a.list.csv";
    check(loadWhiteList(again, dir, 0) == whiteListRead, "a saved list isn't CSV");
    check(again.lists[0].oneTime == read.oneTime, "a saved list changed its kind");
    const std::string rows = rowsText(read);
    check(rowsText(again.lists[0]).compare(0, rows.size(), rows) == 0, "a saved list changed its rows");
    check(again.lists[0].entries.size() - read.entries.size() + again.lists[0].unreadRows.size() <=
              read.unreadRows.size(),
          "a saved list grew");
}

void readAsRegistry(const std::string& dir, const std::string& input) {
    writeFileBytes(dir + "/vx_stream_config_whitelists.json", input);
    WhiteListTable table;
    loadWhiteListsList(table, dir);
    // The load of all lists opens the files the registry names; keep it to
    // names inside the folder, so an input can't make it read a device.
    for (const WhiteList& list : table.lists)
        if (!plainFileName(list.file)) return;
    loadAllWhiteLists(table, dir);
    check(!table.lists.empty(), "the load of all lists left no list");
    resolveExtendedWhiteLists(table);
}

void readWhiteListInput(const std::uint8_t* data, std::size_t size)
{
    const std::string input = inputText(data, size);
    CapturedStderr silenced;
    // Every file of the folder is written afresh by each input before it is
    // read, so the folder is made once and not emptied.
    const std::string dir = fuzzFolder().string();

    readAsLists(dir, input);
    readAsRegistry(dir, input);
    removeKeptCopies(fuzzFolder());

    check(normalisePlate(input).size() == input.size(), "normalisePlate changed the length");
    const DayRule rule = parseDayRule(input);
    check(rule.kind >= 0 && rule.kind <= 2, "a day rule of no kind");
    if (rule.kind == 1)
        check(parseDayRule(dayListText(rule.days)).days == rule.days, "day list");
    splitAtCommas(input);
}

const FuzzRegistration registered{
    "white_list", readWhiteListInput,
    {"ID", "num", "car", "add", "time1", "time2", "ID,num,car,add\n", "ID,num,car,add,time1,time2\n",
     "\"lists\"", "\"whitelists\"", "\"file\"", "\"name\"", "\"permitted_access_days\"",
     "\"permitted_access_time1\"", "\"all_days\"", "2024-02-30", "23:59:59", "1, 3,5"}};

} // namespace
} // namespace vx::fuzz
