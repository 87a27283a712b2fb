#pragma once
// The white lists: one row of a list, a nested list of an extended list, one
// list, and the process-wide table that holds them all in registry order.
//
// Text fields are Windows-1251, as everywhere in memory. A list's `name` is
// kept escaped for JSON (the add escapes it, the registry reader escapes it
// again after the parser, the registry writer emits it as it stands).
#include <array>
#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "config/date_time.h"

namespace vx::config {

struct WhiteListEntry {
    std::int32_t ID = -1;      // row number, -1 while unset
    std::string num;           // the plate; may hold the mask characters * [ ] |
    std::string car;
    std::string add;
    std::string time1;         // validity of a one-time pass, as in the file
    std::string time2;
    DateTime time1Parsed{};
    DateTime time2Parsed{};
};

// Kinds of a day rule.
inline constexpr std::int32_t allDays = 0;
inline constexpr std::int32_t weekDays = 1;
inline constexpr std::int32_t oneDate = 2;

// One plain list inside an extended list, with the days and the daily window
// in which it counts.
struct NestedList {
    std::string file;                                   // file of the plain list
    std::string permitted_access_days = "all_days";
    std::string permitted_access_time1 = "00:00:00";
    std::string permitted_access_time2 = "23:59:59";
    std::string name;                                   // filled in by resolving
    std::int32_t dayKind = allDays;
    std::array<bool, 7> days{};                         // week days 0 (Monday) to 6
    DateTime date{};
    DateTime time1{};
    DateTime time2{};
};

struct WhiteList {
    std::vector<WhiteListEntry> entries;
    std::string name;
    std::string file;                     // relative to ConfigDirectory
    bool dirty = false;                   // edited since the last save
    bool extended = false;                // `lists` counts, `entries` stays empty
    bool oneTime = false;                 // rows carry time1 and time2
    std::vector<NestedList> lists;
    std::vector<std::int32_t> listIndexes;   // per nested list: index of its plain list, or -1
    // Lines of the CSV file that couldn't be read as rows, as the file held
    // them (UTF-8); the next save writes them back after the rows.
    std::vector<std::string> unreadRows;
    // Modification time of the file when the program last read or wrote it;
    // nothing while it hasn't. A save finding another time keeps a copy.
    std::optional<std::int64_t> fileTime;
};

// Kinds as the manager shows them: extended wins over one-time.
inline constexpr std::int32_t plainListKind = 0;
inline constexpr std::int32_t oneTimeListKind = 1;
inline constexpr std::int32_t extendedListKind = 2;
std::int32_t whiteListKind(const WhiteList& list);

// The two look-up tables beside each list: by the plate without * [ ] |, and
// by the normalised plate. Rebuilt when a list is read; the manager itself
// never consults them.
struct WhiteListLookup {
    std::unordered_map<std::string, WhiteListEntry> byPlate;
    std::unordered_map<std::string, WhiteListEntry> byNormalisedPlate;
};

struct WhiteListTable {
    std::vector<WhiteList> lists;
    std::vector<WhiteListLookup> lookups;   // one per list, in the same order
    std::int32_t fileCounter = 1;           // for free file names "list<n>..."
};

// The manager's own table, made on first use. Tests build their own.
WhiteListTable& whiteListTable();

// The program's lock of the white lists, held by loadAllWhiteLists only.
std::mutex& whiteListLock();

// The look-ups of list `index`, made when the table has none for it yet.
WhiteListLookup& lookupOf(WhiteListTable& table, std::size_t index);

// The plate as the first look-up table keys it: without * [ ] |.
std::string plateWithoutMasks(const std::string& num);

// For each extended list and each of its nested lists: the first other list
// whose file is the nested file gives its index and name, when it is not an
// extended list itself; otherwise the index is -1. Rebuilds `listIndexes`.
void resolveExtendedWhiteLists(WhiteListTable& table);

} // namespace vx::config
