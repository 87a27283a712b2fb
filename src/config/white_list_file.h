#pragma once
// The file of one white list: CSV for a plain or one-time list, JSON for an
// extended list. The files have no named lock and no safety copy.
#include <cstdint>
#include <string>

#include "config/white_list.h"

namespace vx::config {

inline constexpr const char* plainListExtension = ".list.csv";
inline constexpr const char* extendedListExtension = ".list.json";

// Results of loadWhiteList.
inline constexpr std::int32_t whiteListRead = 0;
inline constexpr std::int32_t whiteListNoSuchIndex = 1;
inline constexpr std::int32_t whiteListNotOpened = 2;
inline constexpr std::int32_t whiteListNotCsv = 3;

// The column code of a header word: ID 0, num 1, car 2, add 3, time1 4,
// time2 5; -1 for any other word.
std::int32_t whiteListColumn(const std::string& word);

// Reads the CSV file of list `index` into its rows and look-ups:
//  1 the index is outside the table; 2 the file won't open;
//  3 a header word is unknown ("loadWhiteList parse error in <file>
//    (extended?)" on standard error; the caller then tries the JSON form);
//  0 read: the rows replace `entries`, and a header "...,time1,time2" of six
//    words makes the list one-time.
// A byte order mark before the header is skipped. The n-th field of a row
// goes to the n-th column; fields past the header are ignored. A row with ID
// -1 or an empty plate is dropped. A row whose ID isn't a number is skipped
// with "[VX2S] loadWhiteList skips line <n> of <file>: <error>" on standard
// error and kept verbatim in `unreadRows`. The file's modification time
// goes into `fileTime`.
std::int32_t loadWhiteList(WhiteListTable& table, const std::string& configDirectory,
                           std::int32_t index);

// Reads the JSON file of list `index` as an extended list (noting the
// file's time): once the file has
// parsed, its nested lists replace those held, one by one, and then the list
// is marked extended. Errors go to standard error,
// untagged: "loadExtendedWhiteList parse error at byte <n>" and
// "loadExtendedWhiteList parse error type ". Nested lists appended before a
// type error stay; the list is then not marked extended.
void loadExtendedWhiteList(WhiteListTable& table, const std::string& configDirectory,
                           std::int32_t index);

// The exact text of each file form (UTF-8, "\n" line ends).
std::string plainWhiteListText(const WhiteList& list);
std::string oneTimeWhiteListText(const WhiteList& list);
std::string extendedWhiteListText(const WhiteList& list);
// The form the list's flags call for.
std::string whiteListText(const WhiteList& list);

// Writes list `index` to its file (the rows, then the lines kept unread),
// clears its dirty flag and notes the file's new time. When the file's time
// differs from the one last noted, the version on disk is first copied to
// "<file>.<YYYYMMDD_hhmmss>.bak" (a line on standard error names it); when
// that copy fails nothing is written. False, with the list still dirty,
// when nothing was written, and for an index outside the table.
bool saveWhiteList(WhiteListTable& table, const std::string& configDirectory, std::int32_t index);

} // namespace vx::config
