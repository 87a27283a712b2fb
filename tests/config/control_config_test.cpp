#include "config/control_config.h"

#include <gtest/gtest.h>

#include "config_folder.h"

namespace vx::config {
namespace {

const char* const fileName = "vx_control_config.json";

class ControlConfigFile : public test::ConfigFileTest {
protected:
    bool loadText(const std::string& text, ControlSrvConfig& config)
    {
        return loadWith(fileName, text, [&] { return loadControlGlobal(dir(), config); });
    }
};

TEST_F(ControlConfigFile, AMissingFileGetsTheDefaults)
{
    ControlSrvConfig config;
    test::CapturedStderr err;
    ASSERT_TRUE(loadControlGlobal(dir(), config));
    EXPECT_EQ(folder_.bytes(fileName), controlConfigText(ControlSrvConfig{}));   // the golden file's bytes
    EXPECT_EQ(err.text(), "");   // no safety copy for this file
    EXPECT_FALSE(std::filesystem::exists(folder_.file("vx_control_config.json.tmp")));
}

TEST_F(ControlConfigFile, OldOddAndCorruptFiles)
{
    {
        // An empty object: the record keeps what it holds.
        ControlSrvConfig config;
        config.port = 4444;
        ASSERT_TRUE(loadText("{}", config));
        EXPECT_EQ(config.port, 4444);
        EXPECT_EQ(config.modeDB, 2);
        EXPECT_TRUE(config.notReturnServSymb);
        EXPECT_EQ(errors_, "");
    }
    {
        // Read up to the bad key, then the type error; still loaded.
        ControlSrvConfig config;
        EXPECT_TRUE(loadText("{\"port\":7000,\"modeDB\":\"x\",\"httpLogger\":true}", config));
        EXPECT_EQ(errors_, "[VX2S] loadControlGlobal parse error type \n");
        EXPECT_EQ(config.port, 7000);
        EXPECT_FALSE(config.httpLogger);
    }
    {
        ControlSrvConfig config;
        EXPECT_TRUE(loadText("{\"port\":70", config));
        EXPECT_EQ(errors_, "[VX2S] loadControlGlobal parse error at byte 11\n");
        EXPECT_EQ(config.port, 1235);
        EXPECT_EQ(folder_.bytes(fileName), "{\"port\":70");   // not rewritten
    }
    // Only a file that won't open is a failure.
    ControlSrvConfig config;
    test::CapturedStderr err;
    EXPECT_FALSE(loadControlGlobal(dir() + "/missing", config));
    EXPECT_FALSE(saveControlGlobal(dir() + "/missing", config));
}

} // namespace
} // namespace vx::config
