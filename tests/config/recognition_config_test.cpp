#include "config/recognition_config.h"

#include <gtest/gtest.h>

#include "config_folder.h"

namespace vx::config {
namespace {

class RecognitionConfigFile : public test::ConfigFileTest {
protected:
    bool loadText(const std::string& text, RecognitionSrvConfig& config)
    {
        return loadWith(recognitionConfigFileName, text, [&] { return loadRecogGlobal(dir(), config); });
    }
};

TEST_F(RecognitionConfigFile, FirstReadWritesTheDefaultsAndReadsThemBack)
{
    RecognitionSrvConfig config;
    test::CapturedStderr err;
    EXPECT_TRUE(loadRecogGlobal(dir(), config));
    EXPECT_EQ(err.text(), "");
    // The fresh record's bytes (the golden vx_recog_config_srv.json).
    EXPECT_EQ(folder_.bytes(recognitionConfigFileName), recognitionConfigText(RecognitionSrvConfig{}));
    // The written file holds gpuObjects, so its default from the plate length
    // doesn't come into play.
    EXPECT_EQ(config.gpuObjects, 1);
    // Where the defaults can't be written, the read fails.
    EXPECT_FALSE(loadRecogGlobal(dir() + "/missing", config));
}

TEST_F(RecognitionConfigFile, ModelSizeIsLimitedInTheFileButNotInTheRecord)
{
    struct Case { std::int32_t field; const char* model; const char* written; };
    const Case cases[] = {
        {3, "vxplate2dataconfignano.json", "3"}, {7, "vxplate2dataconfignano.json", "3"},
        {-2, "vxplate2dataconfig.json", "0"},
    };
    for (const Case& c : cases) {
        RecognitionSrvConfig config;
        config.modeConfig = c.field;
        const std::string text = recognitionConfigText(config);
        EXPECT_NE(text.find(std::string("\"pathToConfigForLibrary\":\"") + c.model + "\""), std::string::npos)
            << c.field;
        EXPECT_NE(text.find(std::string("\"modeConfig\":") + c.written + ",\n"), std::string::npos) << c.field;
        EXPECT_EQ(config.modeConfig, c.field);
    }
}

TEST_F(RecognitionConfigFile, ReaderTable)
{
    struct Case {
        const char* name;
        std::string text;
        bool ok;
        std::string errors;
        std::function<void(const RecognitionSrvConfig&)> check;
    };
    const Case cases[] = {
        {"old file without gpuObjects takes the plate length", "{\"maxSymbolsPlate\":9,\"plateTemplates\":[]}", true,
         "", [](const RecognitionSrvConfig& c) { EXPECT_EQ(c.gpuObjects, 9); }},
        {"old file without anything but the templates", "{\"plateTemplates\":[\"kz\",\"xx\",\"RU\"]}", true, "",
         [](const RecognitionSrvConfig& c) {
             EXPECT_EQ(c.gpuObjects, 15);
             EXPECT_EQ(c.modeConfig, 1);
             EXPECT_EQ(c.mode, 0);
             EXPECT_TRUE(c.templates[4]);   // kz
             EXPECT_FALSE(c.templates[0]);  // "RU" isn't "ru"
             EXPECT_EQ(c.port, 1234);
         }},
        {"modeConfig and mode are limited", "{\"modeConfig\":7,\"mode\":5,\"plateTemplates\":[]}", true, "",
         [](const RecognitionSrvConfig& c) {
             EXPECT_EQ(c.modeConfig, 3);
             EXPECT_EQ(c.mode, 1);
         }},
        {"no plateTemplates fails after the rest was taken", "{\"port\":5000,\"minPlateWidth\":70}", false,
         "[VX2S] loadRecogGlobal parse error type \n",
         [](const RecognitionSrvConfig& c) {
             EXPECT_EQ(c.port, 5000);
             EXPECT_EQ(c.minPlateWidth, 70);
         }},
        {"wrong type stops at its key", "{\"minPlateHeight\":30,\"minPlateWidth\":\"wide\",\"port\":5000}", false,
         "[VX2S] loadRecogGlobal parse error type \n",
         [](const RecognitionSrvConfig& c) {
             EXPECT_EQ(c.minPlateHeight, 30);
             EXPECT_EQ(c.minPlateWidth, 60);
             EXPECT_EQ(c.port, 1234);
         }},
        // 32 bytes: the parser reports the byte one past the end.
        {"truncated", "{\n\t\"minPlateHeight\":30,\n\t\"port\":", false,
         "[VX2S] loadRecogGlobal parse error at byte 33\n",
         [](const RecognitionSrvConfig& c) { EXPECT_EQ(c.minPlateHeight, 12); }},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        RecognitionSrvConfig config;
        EXPECT_EQ(loadText(c.text, config), c.ok);
        EXPECT_EQ(errors_, c.errors);
        c.check(config);
        EXPECT_EQ(folder_.bytes(recognitionConfigFileName), c.text) << "a read never rewrites an existing file";
    }
}

TEST_F(RecognitionConfigFile, TemplateFlagsAreOnlyEverSet)
{
    RecognitionSrvConfig config;
    ASSERT_TRUE(loadText("{\"plateTemplates\":[\"ru\",\"abh\"]}", config));
    ASSERT_TRUE(loadText("{\"plateTemplates\":[\"by\"]}", config));
    EXPECT_TRUE(config.templates[0]);
    EXPECT_TRUE(config.templates[3]);
    EXPECT_TRUE(config.templates[8]);
}

} // namespace
} // namespace vx::config
