#include "config/control_config.h"

#include <gtest/gtest.h>

#include "support/text_file.h"
#include "support/captured_stderr.h"
#include "support/temp_dir.h"

namespace vx::config {
namespace {

using test::readText;
using test::writeFileBytes;

class ControlConfigFile : public ::testing::Test {
protected:
    std::string dir() const { return folder_.path().string(); }
    std::filesystem::path file() const { return folder_.path() / "vx_control_config.json"; }

    bool loadText(const std::string& text, ControlSrvConfig& config)
    {
        writeFileBytes(file(), text);
        test::CapturedStderr err;
        const bool ok = loadControlGlobal(dir(), config);
        errors_ = err.text();
        return ok;
    }

    test::RuntimeSandbox runtime_;
    test::TempDir folder_;
    std::string errors_;
};

TEST_F(ControlConfigFile, AMissingFileGetsTheDefaults)
{
    ControlSrvConfig config;
    test::CapturedStderr err;
    ASSERT_TRUE(loadControlGlobal(dir(), config));
    EXPECT_EQ(readText(file()), controlConfigText(ControlSrvConfig{}));   // the golden file's bytes
    EXPECT_EQ(err.text(), "");   // no safety copy for this file
    EXPECT_FALSE(std::filesystem::exists(folder_.path() / "vx_control_config.json.tmp"));
}

TEST_F(ControlConfigFile, OldAndOddFiles)
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
        // Nothing limits modeDB.
        ControlSrvConfig config;
        ASSERT_TRUE(loadText("{\"modeDB\":9,\"port\":-1}", config));
        EXPECT_EQ(config.modeDB, 9);
        EXPECT_EQ(config.port, -1);
    }
}

TEST_F(ControlConfigFile, ACorruptFileStillCountsAsLoaded)
{
    {
        // Read up to the bad key, then the type error; still true.
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
        EXPECT_EQ(readText(file()), "{\"port\":70");   // not rewritten
    }
}

TEST_F(ControlConfigFile, OnlyAFileThatWontOpenIsAFailure)
{
    ControlSrvConfig config;
    test::CapturedStderr err;
    EXPECT_FALSE(loadControlGlobal(dir() + "/missing", config));
    EXPECT_FALSE(saveControlGlobal(dir() + "/missing", config));
}

} // namespace
} // namespace vx::config
