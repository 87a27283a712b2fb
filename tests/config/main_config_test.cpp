#include "config/main_config.h"

#include <gtest/gtest.h>

#include "config/config_file.h"
#include "config_folder.h"

namespace vx::config {
namespace {

// A folder the reader derives from the install folder "/opt/vexlane", built
// with the platform's separator.
std::string underInstall(const std::string& name) { return configFilePath("/opt/vexlane", name); }

class MainConfigFile : public test::ConfigFileTest {
protected:
    std::string written() const { return folder_.bytes("vx_main_config.json"); }
    bool hasSafetyCopy() const { return std::filesystem::exists(folder_.file("vx_main_config.json.tmp")); }

    // Loads `text` into `config` as it stands.
    bool loadText(const std::string& text, MainConfig& config)
    {
        MainConfigFolders folders;
        return loadWith("vx_main_config.json", text,
                        [&] { return loadConfig("/opt/vexlane", dir(), config, folders); });
    }
};

TEST_F(MainConfigFile, FirstStartWritesTheDefaultFileWithTheDerivedFolders)
{
    MainConfig config;
    MainConfigFolders folders;
    test::CapturedStderr err;
    ASSERT_TRUE(loadConfig("/opt/vexlane", dir(), config, folders));
    // A fresh record with the derived folders (the golden file shows the
    // shape), and its stream lists empty.
    MainConfig expected;
    expected.systemLogPath = expected.recogLogPath = underInstall("logs");
    expected.reportsPath = underInstall("reports");
    expected.videoPath = underInstall("videos");
    std::vector<std::string> names;
    EXPECT_EQ(written(), mainConfigText(expected, {}, {}, names));
    // Nothing to keep yet: the copy fails harmlessly.
    EXPECT_EQ(err.text().rfind("Failed to copy main config file: ", 0), 0u) << err.text();
    EXPECT_FALSE(hasSafetyCopy());
    EXPECT_EQ(folders.videoPath, underInstall("videos"));
}

// What the reader makes of old, partial and odd files.
struct ReadCase {
    const char* name;
    std::string text;
    bool ok;
};

const std::string lists = "\"videoStreams\":[],\"autoRunStreams\":[]";

TEST_F(MainConfigFile, ClampsOnReading)
{
    struct Clamp {
        std::string key;
        int written;
        int read;
        std::int32_t MainConfig::*field;
    };
    const Clamp clamps[] = {
        {"systemLevel", 6, 0, &MainConfig::systemLevel},   {"systemLevel", -1, 0, &MainConfig::systemLevel},
        {"systemLevel", 5, 5, &MainConfig::systemLevel},   {"sizeImage", 5, 0, &MainConfig::sizeImage},
        {"divideLogRecog", 2, 0, &MainConfig::divideLogRecog}, {"timeLife", -3, 0, &MainConfig::timeLife},
        {"videoChunk", -5, -5, &MainConfig::videoChunk},
    };
    for (const Clamp& c : clamps) {
        MainConfig config;
        ASSERT_TRUE(loadText("{\"" + c.key + "\":" + std::to_string(c.written) + "," + lists + "}", config));
        EXPECT_EQ(config.*c.field, c.read) << c.key << " " << c.written;
    }
}

TEST_F(MainConfigFile, AbsentKeysTakeTheReadersDefaults)
{
    // A record that already holds other values: text, level and flags keep
    // them, the window placement falls back on -1 and 0 instead.
    MainConfig config;
    config.systemLogPath = "/keep/logs";
    config.reportsPath = "";
    config.videoPath = "/was/videos";
    config.systemLevel = 4;
    config.globalRestart = true;
    config.maxSizeVideoDirectoryMb = 7;
    config.xWindow = 5;
    config.yWindow = 6;
    config.wWindow = 7;
    config.hWindow = 8;
    config.display = 2;
    config.perfLog = 1;
    ASSERT_TRUE(loadText("{" + lists + "}", config));
    EXPECT_EQ(config.systemLogPath, "/keep/logs");
    EXPECT_EQ(config.reportsPath, "");
    EXPECT_EQ(config.videoPath, "/was/videos");
    EXPECT_EQ(config.systemLevel, 4);
    EXPECT_TRUE(config.globalRestart);
    EXPECT_EQ(config.maxSizeVideoDirectoryMb, 7u);
    EXPECT_EQ(config.xWindow, -1);
    EXPECT_EQ(config.yWindow, -1);
    EXPECT_EQ(config.wWindow, -1);
    EXPECT_EQ(config.hWindow, -1);
    EXPECT_EQ(config.display, 0);
    EXPECT_EQ(config.perfLog, 0);
    EXPECT_EQ(errors_, "");
}

TEST_F(MainConfigFile, AnEmptyVideoPathIsDerived)
{
    for (const std::string& text : {"{" + lists + "}", "{\"videoPath\":\"\"," + lists + "}"}) {
        MainConfig config;
        ASSERT_TRUE(loadText(text, config));
        EXPECT_EQ(config.videoPath, underInstall("videos")) << text;
        EXPECT_EQ(config.reportsPath, "") << text;
    }
}

TEST_F(MainConfigFile, TypeErrorsEndTheReadWhereTheyStand)
{
    const std::string typeError = "[VX2S] loadConfig parse error type \n";
    {
        // No videoStreams at all: all before it is taken, nothing after.
        MainConfig config;
        config.xWindow = 50;
        EXPECT_FALSE(loadText("{\"systemLevel\":2,\"timeLife\":9,\"xWindow\":3,\"autoRunStreams\":[]}", config));
        EXPECT_EQ(errors_, typeError);
        EXPECT_EQ(config.systemLevel, 2);
        EXPECT_EQ(config.timeLife, 9);
        EXPECT_EQ(config.videoPath, underInstall("videos"));
        EXPECT_EQ(config.xWindow, 50);
    }
    const ReadCase cases[] = {
        {"videoStreams not an array", "{\"videoStreams\":\"vx_stream1.json\",\"autoRunStreams\":[]}", false},
        {"autoRunStreams missing", "{\"videoStreams\":[]}", false},
        {"not an object", "[1,2]", false},
        {"unknown keys only add nothing", "{\"name\":\"Other\",\"version\":9,\"extra\":{}," + lists + "}", true},
    };
    for (const ReadCase& c : cases) {
        MainConfig config;
        EXPECT_EQ(loadText(c.text, config), c.ok) << c.name;
        EXPECT_EQ(errors_, c.ok ? "" : typeError) << c.name;
    }
}

TEST_F(MainConfigFile, ABrokenFileIsReportedAndNotRewritten)
{
    const std::string truncated = "{\"systemLevel\":2,";   // 17 bytes
    MainConfig config;
    EXPECT_FALSE(loadText(truncated, config));
    EXPECT_EQ(errors_, "[VX2S] loadConfig parse error at byte 18\n");
    EXPECT_EQ(written(), truncated);
    EXPECT_FALSE(hasSafetyCopy());
}

} // namespace
} // namespace vx::config
