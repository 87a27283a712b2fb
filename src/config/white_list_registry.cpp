#include "config/white_list_registry.h"

#include <ctime>
#include <filesystem>
#include <fstream>
#include <iostream>

#include "config/json_text.h"
#include "config/text_codec.h"
#include "config/white_list_file.h"
#include "config/white_list_kept_copy.h"
#include "platform/paths.h"

namespace vx::config {
namespace {

std::string registryPath(const std::string& configDirectory) {
    return configFilePath(configDirectory, whiteListsRegistryFile);
}

bool canOpen(const std::string& path) {
    std::ifstream file(toNativePath(path));
    return file.is_open();
}

void loadListFiles(WhiteListTable& table, const std::string& configDirectory) {
    for (std::size_t i = 0; i < table.lists.size(); ++i) {
        const auto index = static_cast<std::int32_t>(i);
        try {
            // A file that won't open (code 2) is an empty list.
            if (loadWhiteList(table, configDirectory, index) == whiteListNotCsv)
                loadExtendedWhiteList(table, configDirectory, index);
        } catch (const std::exception& e) {
            // A row whose ID isn't a number throws out of the reader; the
            // list keeps what it held and the others are still read.
            std::cerr << "[VX2S] loadWhiteList error in " << table.lists[i].file << ": " << e.what()
                      << std::endl;
        }
    }
}

} // namespace

ReadOutcome loadWhiteListsList(WhiteListTable& table, const std::string& configDirectory) {
    const std::string path = registryPath(configDirectory);
    if (!canOpen(path)) return ReadOutcome::notOpened;
    table.lists.clear();
    table.lookups.clear();
    ConfigReadRequest request;
    request.path = path;
    request.readerName = "loadWhiteListsList";
    return readConfigFile(request, [&table](nlohmann::json& document) {
        for (nlohmann::json& element : document["whitelists"]) {
            WhiteList list;
            // Names are kept escaped, as the add stores them and the
            // writer emits them, so a quotation mark or a backslash in a
            // name survives the next save.
            list.name = escapeJsonText(utf8ToCp1251(element["name"].get<std::string>()));
            list.file = utf8ToCp1251(element["file"].get<std::string>());
            table.lists.push_back(std::move(list));
            table.lookups.emplace_back();
        }
    });
}

std::string whiteListsRegistryText(const WhiteListTable& table) {
    std::string text = "{\n\t\"whitelists\":[\n";
    for (std::size_t i = 0; i < table.lists.size(); ++i) {
        const WhiteList& list = table.lists[i];
        text += "\t\t{\n";
        text += "\t\t\t\"name\":\"" + cp1251ToUtf8(list.name) + "\",\n";
        text += "\t\t\t\"file\":\"" + cp1251ToUtf8(escapeJsonText(list.file)) + "\"\n";
        text += "\t\t}";
        text += i + 1 < table.lists.size() ? ",\n" : "\n";
    }
    text += "\t]\n}";
    return text;
}

bool saveWhiteListsList(const WhiteListTable& table, const std::string& configDirectory) {
    // Never replaced by a text the parser refuses.
    return writeJsonConfigFile("", registryPath(configDirectory), whiteListsRegistryText(table));
}

void writeDefaultWhiteLists(const std::string& configDirectory) {
    WhiteListTable defaults;
    WhiteList empty;
    empty.name = defaultWhiteListName;
    empty.file = defaultWhiteListFile;
    defaults.lists.push_back(empty);
    saveWhiteListsList(defaults, configDirectory);
    writeConfigFile("", configFilePath(configDirectory, defaultWhiteListFile), plainWhiteListText(empty));
}

void loadAllWhiteLists(WhiteListTable& table, const std::string& configDirectory) {
    std::lock_guard<std::mutex> lock(whiteListLock());
    if (!canOpen(registryPath(configDirectory))) writeDefaultWhiteLists(configDirectory);
    const ReadOutcome outcome = loadWhiteListsList(table, configDirectory);
    if (table.lists.empty()) {
        if (outcome == ReadOutcome::parseError || outcome == ReadOutcome::typeError) {
            // The defaults go over a registry that can't be read; what it
            // held is kept beside it first, so the operator can mend it by
            // hand. Each such copy bears its time, so none replaces another.
            const std::string registry = registryPath(configDirectory);
            const std::optional<std::string> copy = keepCopyOf(registry, brokenCopySuffix, std::time(nullptr));
            if (copy)
                std::cerr << "[VX2S] loadWhiteListsList: the unreadable registry is kept as "
                          << whiteListsRegistryFile << copy->substr(registry.size()) << std::endl;
        }
        writeDefaultWhiteLists(configDirectory);
        loadWhiteListsList(table, configDirectory);
    }
    loadListFiles(table, configDirectory);
    resolveExtendedWhiteLists(table);
}

std::optional<std::string> findFreeWhiteListFile(WhiteListTable& table,
                                                 const std::string& configDirectory,
                                                 const std::string& extension) {
    for (int tries = 0; tries < 1000; ++tries) {
        const std::string file = "list" + std::to_string(table.fileCounter) + extension;
        if (!canOpen(configFilePath(configDirectory, file))) return file;
        ++table.fileCounter;
    }
    return std::nullopt;
}

std::int32_t addWhiteList(WhiteListTable& table, const std::string& configDirectory,
                          const std::string& name, std::int32_t kind) {
    if (table.lists.size() >= static_cast<std::size_t>(maxWhiteLists)) return tooManyWhiteLists;
    const std::string escapedName = escapeJsonText(name);
    for (const WhiteList& list : table.lists)
        if (list.name == escapedName) return whiteListNameExists;
    const std::optional<std::string> file = findFreeWhiteListFile(
        table, configDirectory, kind == extendedListKind ? extendedListExtension : plainListExtension);
    if (!file) return noFreeWhiteListFile;

    WhiteList list;
    list.name = escapedName;
    list.file = *file;
    list.oneTime = kind == oneTimeListKind;
    list.extended = kind == extendedListKind;
    table.lists.push_back(std::move(list));
    table.lookups.resize(table.lists.size());
    saveWhiteList(table, configDirectory, static_cast<std::int32_t>(table.lists.size() - 1));
    saveWhiteListsList(table, configDirectory);
    ++table.fileCounter;
    resolveExtendedWhiteLists(table);
    return whiteListAdded;
}

bool deleteWhiteList(WhiteListTable& table, const std::string& configDirectory, std::int32_t index) {
    if (index <= 0 || static_cast<std::size_t>(index) >= table.lists.size()) return false;
    // Only a file goes: a name that points at a folder ("" or "..") would
    // otherwise take an empty folder with it.
    const std::filesystem::path file =
        toNativePath(configFilePath(configDirectory, table.lists[index].file));
    std::error_code ignored;
    if (std::filesystem::is_regular_file(file, ignored)) std::filesystem::remove(file, ignored);
    table.lists.erase(table.lists.begin() + index);
    if (static_cast<std::size_t>(index) < table.lookups.size())
        table.lookups.erase(table.lookups.begin() + index);
    saveWhiteListsList(table, configDirectory);
    resolveExtendedWhiteLists(table);
    return true;
}

} // namespace vx::config
