#pragma once
// The registry of white lists (vx_stream_config_whitelists.json): a name and
// a file for each list, the default list "Empty" always first. Its order is
// the order of the table. It has no named lock.
#include <cstdint>
#include <optional>
#include <string>

#include "config/config_file.h"
#include "config/white_list.h"

namespace vx::config {

inline constexpr const char* whiteListsRegistryFile = "vx_stream_config_whitelists.json";
inline constexpr const char* defaultWhiteListName = "Empty";
inline constexpr const char* defaultWhiteListFile = "empty.list.csv";
inline constexpr std::int32_t maxWhiteLists = 1000;

// When the registry opens: empties the table and its look-ups, then appends
// one list (name, file, no rows) per element of "whitelists". Errors go to
// standard error as "[VX2S] loadWhiteListsList parse error at byte <n>" or
// "... parse error type "; the table keeps the lists taken before a type
// error. The outcome is only for the load of all lists.
ReadOutcome loadWhiteListsList(WhiteListTable& table, const std::string& configDirectory);

// The registry's exact text for the table's names and files (UTF-8).
std::string whiteListsRegistryText(const WhiteListTable& table);
// Writes the table's names and files. False when the file won't open.
bool saveWhiteListsList(const WhiteListTable& table, const std::string& configDirectory);

// Writes the default registry ("Empty" with empty.list.csv) and the empty
// list's file, holding the header alone.
void writeDefaultWhiteLists(const std::string& configDirectory);

// The load of all lists, for start-up and the manager dialog, under
// whiteListLock(): the registry (written with the defaults when it won't open,
// or when it names no list), then every list's file, CSV first and JSON
// when the header isn't CSV, then the nested lists are resolved. A list
// whose file won't open or can't be read stays in the table with no rows.
void loadAllWhiteLists(WhiteListTable& table, const std::string& configDirectory);

// A file name "list<counter><extension>" that no file bears yet, trying the
// counter and stepping it up to 1000 times; nothing after 1000 tries. The
// counter is left at the name found.
std::optional<std::string> findFreeWhiteListFile(WhiteListTable& table,
                                                 const std::string& configDirectory,
                                                 const std::string& extension);

// Results of addWhiteList.
inline constexpr std::int32_t whiteListAdded = 0;
inline constexpr std::int32_t tooManyWhiteLists = 1;
inline constexpr std::int32_t whiteListNameExists = 2;
inline constexpr std::int32_t noFreeWhiteListFile = 3;

// Adds a list of `kind` (0 plain, 1 one-time, 2 extended) named `name`,
// compared as it is and stored escaped for JSON; writes its file and the
// registry, steps the counter, resolves the extended lists.
std::int32_t addWhiteList(WhiteListTable& table, const std::string& configDirectory,
                          const std::string& name, std::int32_t kind);

// Removes list `index` from the table, the registry and the disk, and
// resolves the extended lists again. False for an index outside the table
// and for list 0, the default list, which is never removed.
bool deleteWhiteList(WhiteListTable& table, const std::string& configDirectory, std::int32_t index);

} // namespace vx::config
