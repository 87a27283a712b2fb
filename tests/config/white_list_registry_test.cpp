#include "config/white_list_registry.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <regex>

#include "config/text_codec.h"
#include "config/white_list_file.h"
#include "config_folder.h"

namespace vx::config {
namespace {

using test::CapturedStderr;
using test::ConfigFolder;

const std::string defaultRegistry =
    "{\n"
    "\t\"whitelists\":[\n"
    "\t\t{\n"
    "\t\t\t\"name\":\"Empty\",\n"
    "\t\t\t\"file\":\"empty.list.csv\"\n"
    "\t\t}\n"
    "\t]\n"
    "}";

std::string registryOf(const std::vector<std::pair<std::string, std::string>>& lists) {
    WhiteListTable table;
    for (const auto& [name, file] : lists) {
        WhiteList list;
        list.name = name;
        list.file = file;
        table.lists.push_back(list);
    }
    return whiteListsRegistryText(table);
}

// The names of the registry's kept copies in the folder, sorted.
std::vector<std::string> brokenCopies(const ConfigFolder& folder) {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder.file("")))
        if (entry.path().extension() == ".broken") names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

std::vector<std::string> namesOf(const WhiteListTable& table) {
    std::vector<std::string> names;
    for (const WhiteList& list : table.lists) names.push_back(list.name);
    return names;
}

TEST(WhiteListRegistry, FirstStartOrAnEmptyRegistryGetsTheDefaults) {
    ConfigFolder folder;
    WhiteListTable table;
    CapturedStderr err;
    loadAllWhiteLists(table, folder.dir());
    EXPECT_EQ(folder.bytes("vx_stream_config_whitelists.json"), defaultRegistry);
    EXPECT_EQ(folder.bytes("empty.list.csv"), "ID,num,car,add\n");
    EXPECT_EQ(namesOf(table), std::vector<std::string>{"Empty"});
    EXPECT_EQ(table.lists[0].file, "empty.list.csv");
    EXPECT_EQ(table.lookups.size(), 1u);
    EXPECT_EQ(err.text(), "");
    // An empty registry is replaced by the default too.
    for (const char* registry : {"{\"whitelists\":[]}", "{}"}) {
        folder.put("vx_stream_config_whitelists.json", registry);
        WhiteListTable again;
        loadAllWhiteLists(again, folder.dir());
        EXPECT_EQ(folder.bytes("vx_stream_config_whitelists.json"), defaultRegistry) << registry;
        EXPECT_EQ(namesOf(again), std::vector<std::string>{"Empty"});
    }
}

TEST(WhiteListRegistry, LoadsEveryKindAndResolvesTheNestedLists) {
    ConfigFolder folder;
    folder.put("vx_stream_config_whitelists.json",
               registryOf({{"Empty", "empty.list.csv"},
                           {utf8ToCp1251("Двор"), "list1.list.csv"},
                           {"Once", "list2.list.csv"},
                           {"Ext", "list3.list.json"},
                           {"Gone", "deleted.list.csv"}}));
    folder.put("empty.list.csv", "ID,num,car,add\n");
    folder.put("list1.list.csv", "ID,num,car,add\n0,A1,,,\n1,A2,,,\n");
    folder.put("list2.list.csv", "ID,num,car,add,time1,time2\n0,B1,,,2024-01-01 00:00:00,x,\n");
    const std::string nestedTail =
        "\",\"permitted_access_days\":\"all_days\",\"permitted_access_time1\":\"00:00:00\","
        "\"permitted_access_time2\":\"23:59:59\"}";
    folder.put("list3.list.json", "{\"lists\":[{\"file\":\"list1.list.csv" + nestedTail +
                                      ",{\"file\":\"list1.list.csv" + nestedTail +
                                      ",{\"file\":\"list3.list.json" + nestedTail +
                                      ",{\"file\":\"list2.list.csv" + nestedTail +
                                      ",{\"file\":\"nowhere.list.csv" + nestedTail + "]}");
    WhiteListTable table;
    CapturedStderr err;
    loadAllWhiteLists(table, folder.dir());
    ASSERT_EQ(table.lists.size(), 5u);
    EXPECT_EQ(table.lists[1].name, utf8ToCp1251("Двор"));
    EXPECT_EQ(table.lists[1].entries.size(), 2u);
    EXPECT_TRUE(table.lists[2].oneTime);
    EXPECT_EQ(table.lists[2].entries.size(), 1u);
    const WhiteList& ext = table.lists[3];
    EXPECT_TRUE(ext.extended);
    EXPECT_TRUE(ext.entries.empty());
    // Nested twice, itself (skipped, then no other bears it), one-time, unknown.
    EXPECT_EQ(ext.listIndexes, (std::vector<std::int32_t>{1, 1, -1, 2, -1}));
    EXPECT_EQ(ext.lists[0].name, utf8ToCp1251("Двор"));
    EXPECT_EQ(ext.lists[3].name, "Once");
    EXPECT_EQ(ext.lists[4].name, "");
    // A deleted file leaves its list with no rows.
    EXPECT_EQ(table.lists[4].name, "Gone");
    EXPECT_TRUE(table.lists[4].entries.empty());
    EXPECT_EQ(err.text(), "loadWhiteList parse error in list3.list.json (extended?)\n");
    EXPECT_EQ(table.lookups.size(), 5u);
}

struct RegistryCase {
    const char* what;
    std::string bytes;
    std::vector<std::string> names;
    std::string stderrText;
    bool defaultOnly;
};

TEST(WhiteListRegistry, ReaderTable) {
    const std::string keptAside = "<kept>";
    const std::string typeError = "[VX2S] loadWhiteListsList parse error type \n";
    const std::string two = registryOf({{"Empty", "empty.list.csv"}, {"A", "a.list.csv"}});
    const std::vector<RegistryCase> cases = {
        {"truncated", two.substr(0, 40), {"Empty"},
         "[VX2S] loadWhiteListsList parse error at byte 41\n" + keptAside, true},
        {"a name that is a number", "{\"whitelists\":[{\"name\":1,\"file\":\"x\"}]}", {"Empty"},
         typeError + keptAside, true},
        {"a type error after one list",
         "{\"whitelists\":[{\"name\":\"Empty\",\"file\":\"empty.list.csv\"},{\"name\":\"B\"}]}",
         {"Empty"}, typeError, false},
        {"whitelists an object", "{\"whitelists\":{\"k\":{\"name\":\"Empty\",\"file\":\"e\"}}}",
         {"Empty"}, "", false},
    };
    for (const RegistryCase& c : cases) {
        SCOPED_TRACE(c.what);
        ConfigFolder folder;
        folder.put("vx_stream_config_whitelists.json", c.bytes);
        WhiteListTable table;
        CapturedStderr err;
        loadAllWhiteLists(table, folder.dir());
        EXPECT_EQ(namesOf(table), c.names);
        // With nothing read, the defaults replace the registry and the
        // unreadable one is kept beside it, named with its time; a registry
        // that was read stays.
        const std::vector<std::string> kept = brokenCopies(folder);
        ASSERT_EQ(kept.size(), c.defaultOnly ? 1u : 0u);
        std::string expected = c.stderrText;
        if (c.defaultOnly) {
            EXPECT_TRUE(std::regex_match(
                kept[0], std::regex(R"(vx_stream_config_whitelists\.json\.\d{8}_\d{6}\.broken)")))
                << kept[0];
            expected.replace(expected.find(keptAside), keptAside.size(),
                             "[VX2S] loadWhiteListsList: the unreadable registry is kept as " + kept[0] + "\n");
        }
        EXPECT_EQ(err.text(), expected);
        if (c.defaultOnly) {
            EXPECT_EQ(folder.bytes("vx_stream_config_whitelists.json"), defaultRegistry);
            EXPECT_EQ(folder.bytes(kept[0]), c.bytes);
            EXPECT_EQ(folder.bytes("empty.list.csv"), "ID,num,car,add\n");
        } else {
            EXPECT_EQ(folder.bytes("vx_stream_config_whitelists.json"), c.bytes);
        }
    }
}

TEST(WhiteListRegistry, AddWritesTheListAndTheRegistry) {
    ConfigFolder folder;
    WhiteListTable table;
    loadAllWhiteLists(table, folder.dir());
    folder.put("list1.list.csv", "taken");

    EXPECT_EQ(addWhiteList(table, folder.dir(), utf8ToCp1251("Двор \"1\""), plainListKind), whiteListAdded);
    EXPECT_EQ(table.lists[1].file, "list2.list.csv");
    EXPECT_EQ(table.lists[1].name, utf8ToCp1251("Двор \\\"1\\\""));
    EXPECT_EQ(table.fileCounter, 3);
    EXPECT_FALSE(table.lists[1].dirty);
    EXPECT_EQ(folder.bytes("list2.list.csv"), "ID,num,car,add\n");

    EXPECT_EQ(addWhiteList(table, folder.dir(), "Once", oneTimeListKind), whiteListAdded);
    EXPECT_EQ(folder.bytes("list3.list.csv"), "ID,num,car,add,time1,time2\n");
    EXPECT_EQ(addWhiteList(table, folder.dir(), "", extendedListKind), whiteListAdded);
    EXPECT_EQ(folder.bytes("list4.list.json"), "{\n\t\"lists\":[\n\t]\n}");
    EXPECT_EQ(table.lookups.size(), 4u);
    EXPECT_EQ(folder.bytes("vx_stream_config_whitelists.json"),
              registryOf({{"Empty", "empty.list.csv"},
                          {utf8ToCp1251("Двор \\\"1\\\""), "list2.list.csv"},
                          {"Once", "list3.list.csv"},
                          {"", "list4.list.json"}}));

    EXPECT_EQ(addWhiteList(table, folder.dir(), "Once", plainListKind), whiteListNameExists);
    EXPECT_EQ(addWhiteList(table, folder.dir(), "", plainListKind), whiteListNameExists);
    EXPECT_EQ(table.lists.size(), 4u);

    // A reload sees what the add wrote, names escaped as the add stored them.
    WhiteListTable reread;
    CapturedStderr err;
    loadAllWhiteLists(reread, folder.dir());
    EXPECT_EQ(namesOf(reread), namesOf(table));
    EXPECT_TRUE(reread.lists[2].oneTime);
    EXPECT_TRUE(reread.lists[3].extended);
    EXPECT_EQ(addWhiteList(reread, folder.dir(), utf8ToCp1251("Двор \"1\""), plainListKind), whiteListNameExists);
}

TEST(WhiteListRegistry, DeleteRemovesFromTableRegistryAndDisk) {
    ConfigFolder folder;
    WhiteListTable table;
    loadAllWhiteLists(table, folder.dir());
    addWhiteList(table, folder.dir(), "A", plainListKind);
    addWhiteList(table, folder.dir(), "B", plainListKind);
    addWhiteList(table, folder.dir(), "E", extendedListKind);
    NestedList nested;
    nested.file = "list2.list.csv";
    table.lists[3].lists.push_back(nested);
    resolveExtendedWhiteLists(table);
    EXPECT_EQ(table.lists[3].listIndexes, std::vector<std::int32_t>{2});

    EXPECT_FALSE(deleteWhiteList(table, folder.dir(), 0));
    EXPECT_FALSE(deleteWhiteList(table, folder.dir(), 4));
    EXPECT_TRUE(deleteWhiteList(table, folder.dir(), 1));
    EXPECT_FALSE(std::filesystem::exists(folder.file("list1.list.csv")));
    EXPECT_EQ(namesOf(table), (std::vector<std::string>{"Empty", "B", "E"}));
    EXPECT_EQ(table.lookups.size(), 3u);
    EXPECT_EQ(table.lists[2].listIndexes, std::vector<std::int32_t>{1});
    EXPECT_EQ(folder.bytes("vx_stream_config_whitelists.json"),
              registryOf({{"Empty", "empty.list.csv"}, {"B", "list2.list.csv"}, {"E", "list3.list.json"}}));

    // A list whose file names a folder takes no folder with it.
    std::filesystem::create_directory(folder.file("sub"));
    table.lists[1].file = "sub";
    EXPECT_TRUE(deleteWhiteList(table, folder.dir(), 1));
    EXPECT_TRUE(std::filesystem::is_directory(folder.file("sub")));
}

} // namespace
} // namespace vx::config
