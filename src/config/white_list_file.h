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
// A row with ID -1 or an empty plate is dropped. A row with more fields than
// the header is skipped with a line on standard error. THROWS
// std::invalid_argument("invalid stoi argument") or
// std::out_of_range("stoi argument out of range") when an ID isn't a number;
// the list is then left as it was.
std::int32_t loadWhiteList(WhiteListTable& table, const std::string& configDirectory,
                           std::int32_t index);

// Reads the JSON file of list `index` as an extended list: once the file has
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

// Writes list `index` to its file and clears its dirty flag, also when the
// file won't open (nothing is reported then; the result is false). False
// too for an index outside the table.
bool saveWhiteList(WhiteListTable& table, const std::string& configDirectory, std::int32_t index);

} // namespace vx::config
