#include "config/config_file.h"

#include <future>

#include <gtest/gtest.h>

#include "config/date_time.h"
#include "platform/named_lock.h"
#include "platform/paths.h"
#include "config_folder.h"

namespace vx::config {
namespace {

using test::CapturedStderr;

// Whether another thread can take the named lock at this moment. Never waits.
bool freeForOtherThreads(const std::string& mutexName) {
    return std::async(std::launch::async, [&] {
               auto lock = platform::createNamedLock(mutexName);
               if (!lock || !lock->tryLock()) return false;
               lock->unlock();
               return true;
           }).get();
}

class ConfigFile : public test::ConfigFileTest {
protected:
    std::string pathOf(const std::string& name) const { return configFilePath(dir(), name); }
};

TEST_F(ConfigFile, FileNamedIn1251LandsUnderItsUtf8Name) {
    // "Список" in 1251.
    const std::string path = pathOf("\xD1\xEF\xE8\xF1\xEE\xEA.list.json");
    EXPECT_TRUE(writeConfigFile("", path, "{}"));
    EXPECT_EQ(vx::test::readText(folder_.file("") / u8"Список.list.json"), "{}");
}

TEST_F(ConfigFile, SafetyCopyHoldsThePreviousSave) {
    const std::string path = pathOf("vx_main_config.json");
    writeConfigFile(mainConfigMutexName, path, "first", SafetyCopy::keepPrevious);
    CapturedStderr err;
    writeConfigFile(mainConfigMutexName, path, "second", SafetyCopy::keepPrevious);
    writeConfigFile(mainConfigMutexName, path, "third", SafetyCopy::keepPrevious);
    EXPECT_EQ(err.text(), "");
    EXPECT_EQ(folder_.bytes("vx_main_config.json"), "third");
    EXPECT_EQ(folder_.bytes("vx_main_config.json.tmp"), "second");
}

TEST_F(ConfigFile, UnwritableTargetWritesNothingAndSaysSo) {
    CapturedStderr err;
    EXPECT_FALSE(writeConfigFile(controlConfigMutexName, pathOf("missing/vx_control_config.json"), "x"));
    std::filesystem::create_directory(folder_.file("a_folder"));
    EXPECT_FALSE(writeConfigFile(controlConfigMutexName, pathOf("a_folder"), "x"));
    EXPECT_EQ(err.text().rfind("Failed to write config file " + pathOf("missing/vx_control_config.json") + ": ", 0),
              0u) << err.text();
    EXPECT_NE(err.text().find("Failed to write config file " + pathOf("a_folder") + ": "), std::string::npos);
    EXPECT_TRUE(std::filesystem::is_empty(folder_.file("a_folder")));
    EXPECT_FALSE(std::filesystem::exists(folder_.file("a_folder.new"))) << "temporary file left";
    EXPECT_TRUE(freeForOtherThreads(controlConfigMutexName)) << "lock left held";
}

// The platform refuses a lock name that holds its path separator (on Linux
// it would leave the locks folder, on Windows a mutex name takes no '\').
const std::string badLockName = std::string("bad") + platform::pathSeparator + "name";

TEST_F(ConfigFile, ReadHandsOverTheDocumentUnderTheLock) {
    folder_.put("vx_stream7.json", "{\r\n\t\"version\":1,\r\n\t\"id\":7\r\n}");
    int id = 0;
    bool lockedDuringTake = false;
    CapturedStderr err;
    const ReadOutcome outcome = readConfigFile(
        {cameraConfigMutexName, pathOf("vx_stream7.json"), "loadCamera"}, [&](nlohmann::json& j) {
            id = j.value("id", 0);
            lockedDuringTake = !freeForOtherThreads(cameraConfigMutexName);
        });
    EXPECT_EQ(outcome, ReadOutcome::done);
    EXPECT_EQ(id, 7);
    EXPECT_TRUE(lockedDuringTake);
    EXPECT_TRUE(freeForOtherThreads(cameraConfigMutexName));
    EXPECT_EQ(err.text(), "");
}

TEST_F(ConfigFile, OtherFailuresWhileTakingAreReportedAsTypeErrors) {
    folder_.put("receiversamples.json", "{\"samples\":[],\"time\":\"2024-xx-07 09:05:01\"}");
    auto outcomeOf = [&](const std::function<void(nlohmann::json&)>& take) {
        CapturedStderr err;
        const ReadOutcome outcome =
            readConfigFile({"", pathOf("receiversamples.json"), "loadSignals"}, take);
        EXPECT_EQ(err.text(), "[VX2S] loadSignals parse error type \n");
        return outcome;
    };
    EXPECT_EQ(outcomeOf([](nlohmann::json& j) { j.at("absent"); }), ReadOutcome::typeError);
    EXPECT_EQ(outcomeOf([](nlohmann::json& j) { j["samples"].erase(j.begin()); }),
              ReadOutcome::typeError);   // an iterator of another value
    DateTime value;
    EXPECT_EQ(outcomeOf([&](nlohmann::json& j) { parseDateTime(j.value("time", std::string()), value); }),
              ReadOutcome::typeError);   // a field without a digit
}

TEST_F(ConfigFile, LockThatCantBeHadStopsTheWriteAndTheRead) {
    CapturedStderr err;
    EXPECT_FALSE(writeConfigFile(badLockName, pathOf("x.json"), "x"));
    EXPECT_FALSE(std::filesystem::exists(folder_.file("x.json")));
    folder_.put("x.json", "{}");
    bool taken = false;
    EXPECT_EQ(readConfigFile({badLockName, pathOf("x.json"), "loadConfig"},
                             [&](nlohmann::json&) { taken = true; }),
              ReadOutcome::noLock);
    EXPECT_FALSE(taken);
    EXPECT_EQ(err.text(), "Failed to create/open mutex: " + badLockName + "\n"
                          "Failed to create/open mutex: " + badLockName + "\n");
}

} // namespace
} // namespace vx::config
