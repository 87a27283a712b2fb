#include "config/white_list_file.h"

#include <ctime>
#include <fstream>
#include <iostream>
#include <stdexcept>
#include <unordered_map>
#include <vector>

#include "config/comma_split.h"
#include "config/config_file.h"
#include "config/plate_normalise.h"
#include "config/text_codec.h"
#include "config/white_list_day_rule.h"
#include "config/white_list_kept_copy.h"
#include "platform/file_time.h"

namespace vx::config {
namespace {

const char* const utf8ByteOrderMark = "\xEF\xBB\xBF";

std::optional<std::int64_t> modificationTime(const std::string& configDirectory, const std::string& file) {
    return platform::fileModificationTime(toNativePath(configFilePath(configDirectory, file)));
}

bool validIndex(const WhiteListTable& table, std::int32_t index) {
    return index >= 0 && static_cast<std::size_t>(index) < table.lists.size();
}

// A line as the file holds it, without the carriage return of a CR LF end.
bool readLine(std::istream& in, std::string& line) {
    if (!std::getline(in, line)) return false;
    if (!line.empty() && line.back() == '\r') line.pop_back();
    return true;
}

// The decimal conversion of an ID. The errors carry the same texts on every
// platform.
std::int32_t rowId(const std::string& text) {
    try {
        return std::stoi(text);
    } catch (const std::invalid_argument&) {
        throw std::invalid_argument("invalid stoi argument");
    } catch (const std::out_of_range&) {
        throw std::out_of_range("stoi argument out of range");
    }
}

void parseTime(const std::string& text, DateTime& value) {
    try {
        parseDateTime(text, value);
    } catch (const std::exception&) {
        // a time that isn't one leaves the parsed value as it was
    }
}

void setField(WhiteListEntry& row, std::int32_t column, const std::string& token) {
    switch (column) {
    case 0: row.ID = rowId(token); break;
    case 1: row.num = utf8ToCp1251(token); break;
    case 2: row.car = utf8ToCp1251(token); break;
    case 3: row.add = utf8ToCp1251(token); break;
    case 4: row.time1 = utf8ToCp1251(token); parseTime(row.time1, row.time1Parsed); break;
    case 5: row.time2 = utf8ToCp1251(token); parseTime(row.time2, row.time2Parsed); break;
    default: break;
    }
}

void appendRow(std::string& text, const WhiteListEntry& row, bool withTimes) {
    text += std::to_string(row.ID) + ',' + cp1251ToUtf8(row.num) + ',' + cp1251ToUtf8(row.car) +
            ',' + cp1251ToUtf8(row.add) + ',';
    if (withTimes) text += row.time1 + ',' + row.time2 + ',';   // written unconverted
    text += '\n';
}

std::string csvText(const WhiteList& list, const char* header, bool withTimes) {
    std::string text = header;
    for (const WhiteListEntry& row : list.entries) appendRow(text, row, withTimes);
    for (const std::string& line : list.unreadRows) text += line + '\n';
    return text;
}

} // namespace

std::int32_t whiteListColumn(const std::string& word) {
    static const std::unordered_map<std::string, std::int32_t> columns = {
        {"ID", 0}, {"num", 1}, {"car", 2}, {"add", 3}, {"time1", 4}, {"time2", 5}};
    const auto found = columns.find(word);
    return found == columns.end() ? -1 : found->second;
}

std::int32_t loadWhiteList(WhiteListTable& table, const std::string& configDirectory,
                           std::int32_t index) {
    if (!validIndex(table, index)) return whiteListNoSuchIndex;
    WhiteList& list = table.lists[index];
    std::ifstream file(toNativePath(configFilePath(configDirectory, list.file)), std::ios::binary);
    if (!file.is_open()) return whiteListNotOpened;

    const std::optional<std::int64_t> readTime = modificationTime(configDirectory, list.file);
    std::string line;
    readLine(file, line);
    // A byte order mark that an editor put in front of the header is no part
    // of the first word.
    if (line.rfind(utf8ByteOrderMark, 0) == 0) line.erase(0, 3);
    std::vector<std::int32_t> columns;
    for (const std::string& word : splitAtCommas(line)) {
        const std::int32_t column = whiteListColumn(word);
        if (column < 0) {
            std::cerr << "loadWhiteList parse error in " << list.file << " (extended?)" << std::endl;
            return whiteListNotCsv;
        }
        columns.push_back(column);
    }

    std::vector<WhiteListEntry> rows;
    std::vector<std::string> unreadRows;
    WhiteListLookup lookup;
    for (int lineNumber = 2; readLine(file, line); ++lineNumber) {
        const std::vector<std::string> tokens = splitAtCommas(line);
        WhiteListEntry row;
        try {
            // The n-th token goes to the n-th column; a row longer than the
            // header keeps its first columns.
            for (std::size_t i = 0; i < tokens.size() && i < columns.size(); ++i)
                setField(row, columns[i], tokens[i]);
        } catch (const std::exception& e) {
            // One row that can't be read costs that row alone, and only in
            // memory: the line goes back into the file at the next save.
            std::cerr << "[VX2S] loadWhiteList skips line " << lineNumber << " of " << list.file << ": "
                      << e.what() << std::endl;
            unreadRows.push_back(line);
            continue;
        }
        if (row.ID == -1 || row.num.empty()) continue;
        lookup.byPlate[plateWithoutMasks(row.num)] = row;
        lookup.byNormalisedPlate[normalisePlate(row.num)] = row;
        rows.push_back(std::move(row));
    }

    list.entries = std::move(rows);
    list.unreadRows = std::move(unreadRows);
    list.fileTime = readTime;
    lookupOf(table, static_cast<std::size_t>(index)) = std::move(lookup);
    if (columns.size() == 6 && columns[4] == 4 && columns[5] == 5) list.oneTime = true;
    return whiteListRead;
}

void loadExtendedWhiteList(WhiteListTable& table, const std::string& configDirectory,
                           std::int32_t index) {
    if (!validIndex(table, index)) return;
    table.lists[index].fileTime = modificationTime(configDirectory, table.lists[index].file);
    ConfigReadRequest request;
    request.path = configFilePath(configDirectory, table.lists[index].file);
    request.readerName = "loadExtendedWhiteList";
    request.tagged = false;
    readConfigFile(request, [&table, index](nlohmann::json& document) {
        // The nested lists of the file replace those held (a list read
        // twice doesn't hold them twice); a file that won't parse changes
        // nothing.
        WhiteList& list = table.lists[index];
        list.lists.clear();
        list.listIndexes.clear();
        for (nlohmann::json& element : document["lists"]) {
            NestedList nested;
            nested.file = utf8ToCp1251(element["file"].get<std::string>());
            nested.permitted_access_days = element["permitted_access_days"].get<std::string>();
            nested.permitted_access_time1 = element["permitted_access_time1"].get<std::string>();
            nested.permitted_access_time2 = element["permitted_access_time2"].get<std::string>();
            const DayRule rule = parseDayRule(nested.permitted_access_days);
            nested.dayKind = rule.kind;
            nested.days = rule.days;
            nested.date = rule.date;
            parseDateTime("2000-01-01T" + nested.permitted_access_time1, nested.time1);
            parseDateTime("2000-01-01T" + nested.permitted_access_time2, nested.time2);
            list.lists.push_back(std::move(nested));
        }
        list.extended = true;
    });
}

std::string plainWhiteListText(const WhiteList& list) {
    return csvText(list, "ID,num,car,add\n", false);
}

std::string oneTimeWhiteListText(const WhiteList& list) {
    return csvText(list, "ID,num,car,add,time1,time2\n", true);
}

std::string extendedWhiteListText(const WhiteList& list) {
    std::string text = "{\n\t\"lists\":[\n";
    for (std::size_t i = 0; i < list.lists.size(); ++i) {
        const NestedList& nested = list.lists[i];
        if (i > 0) text += "\t\t,\n";
        text += "\t\t{\n";
        text += "\t\t\t\"file\":\"" + cp1251ToUtf8(nested.file) + "\",\n";
        text += "\t\t\t\"permitted_access_days\":\"" + nested.permitted_access_days + "\",\n";
        text += "\t\t\t\"permitted_access_time1\":\"" + nested.permitted_access_time1 + "\",\n";
        text += "\t\t\t\"permitted_access_time2\":\"" + nested.permitted_access_time2 + "\"\n";
        text += "\t\t}\n";
    }
    text += "\t]\n}";
    return text;
}

std::string whiteListText(const WhiteList& list) {
    if (list.extended) return extendedWhiteListText(list);
    if (list.oneTime) return oneTimeWhiteListText(list);
    return plainWhiteListText(list);
}

bool saveWhiteList(WhiteListTable& table, const std::string& configDirectory, std::int32_t index) {
    if (!validIndex(table, index)) return false;
    WhiteList& list = table.lists[index];
    const std::string path = configFilePath(configDirectory, list.file);
    // A file that changed since the program read it was edited by someone
    // else: that version is kept beside it before it is written over.
    const std::optional<std::int64_t> onDisk = modificationTime(configDirectory, list.file);
    if (onDisk && onDisk != list.fileTime) {
        const std::optional<std::string> copy = keepCopyOf(path, backupCopySuffix, std::time(nullptr));
        if (!copy) {
            std::cerr << "[VX2S] saveWhiteList: " << list.file
                      << " changed on disk since it was read and can't be kept; it is not written over"
                      << std::endl;
            return false;
        }
        std::cerr << "[VX2S] saveWhiteList: " << list.file
                  << " changed on disk since it was read; that version is kept as " << list.file
                  << copy->substr(path.size()) << std::endl;
    }
    // An extended list is JSON: never replaced by a text the parser refuses.
    const bool written = list.extended ? writeJsonConfigFile("", path, whiteListText(list))
                                       : writeConfigFile("", path, whiteListText(list));
    if (!written) return false;
    list.dirty = false;
    list.fileTime = modificationTime(configDirectory, list.file);
    return true;
}

} // namespace vx::config
