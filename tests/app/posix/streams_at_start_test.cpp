// The manager started on an installation with three stream files, one of
// them broken and one with autoRun false: what its log says about the
// stream table it built.
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "support/captured_stderr.h"
#include "support/installation.h"

using namespace vx::test;

namespace {

namespace fs = std::filesystem;

std::string streamFile(int id, const std::string& name, bool autoRun)
{
    return "{\n\t\"name\":\"CameraConfig\",\n\t\"version\":1,\n\t\"Common\":{\n\t\t\"videoName\":\"" + name +
           "\",\n\t\t\"autoRun\":" + (autoRun ? "true" : "false") + ",\n\t\t\"ID\":" + std::to_string(id) +
           "\n\t},\n\t\"Recognition\":{\n\t},\n\t\"ControlReport\":{\n\t}\n}";
}

// The lines of the log, each without its time stamp ("[...]" and, on the
// standard error path, the blank after it) and without CR.
std::vector<std::string> logTexts(const fs::path& file)
{
    std::vector<std::string> lines;
    std::istringstream in(readFileBytes(file));
    for (std::string line; std::getline(in, line);) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        std::string text = line.size() > 21 ? line.substr(21) : "";
        if (!text.empty() && text[0] == ' ') text.erase(0, 1);
        lines.push_back(text);
    }
    return lines;
}

// Whether `wanted` appear in `lines` in this order (other lines between them).
bool inOrder(const std::vector<std::string>& lines, const std::vector<std::string>& wanted)
{
    std::size_t next = 0;
    for (const std::string& line : lines)
        if (next < wanted.size() && line == wanted[next]) ++next;
    return next == wanted.size();
}

std::string joined(const std::vector<std::string>& lines)
{
    std::string all;
    for (const auto& line : lines) all += line + "\n";
    return all;
}

} // namespace

TEST(StreamsAtStart, BrokenFileIsLoggedAndTheOthersJoinTheTable)
{
    RuntimeSandbox sandbox;
    ScopedEnv headless("QT_QPA_PLATFORM", "offscreen");
    Installation install;
    fs::create_directories(install.configs());
    fs::create_directories(install.logs());
    const std::string logs = install.logs().string();
    writeFileBytes(install.configs() / "vx_main_config.json",
                   "{\"systemLogPath\":\"" + logs + "\",\"recogLogPath\":\"" + logs +
                       "\",\"systemLevel\":0,\"videoChunk\":240,"
                       "\"videoStreams\":[\"vx_stream1.json\",\"vx_stream2.json\",\"vx_stream3.json\"],"
                       "\"autoRunStreams\":[true,true,true]}");
    writeFileBytes(install.configs() / "vx_stream1.json", streamFile(1, "Gate", false));
    const std::string broken = "{\"Common\":{\"videoName\":\"Broken\",";
    writeFileBytes(install.configs() / "vx_stream2.json", broken);
    writeFileBytes(install.configs() / "vx_stream3.json", streamFile(3, "Yard", true));

    const std::string mainBefore = readFileBytes(install.configs() / "vx_main_config.json");
    auto manager = install.startManager();
    ASSERT_TRUE(manager);
    const fs::path log = install.logs() / "VexlaneLog.txt";
    const std::vector<std::string> expected = {
        "Start",
        "[TRACE]ConfigGlobal ok!",
        "[TRACE]LoadCamera vx_stream1.json ok!",
        "[TRACE]AddCamera Gate ok!",
        "[VX2S] loadCamera parse error at byte " + std::to_string(broken.size() + 1),
        "[ERROR]LoadCamera vx_stream2.json error!",
        "[TRACE]LoadCamera vx_stream3.json ok!",
        "[TRACE]AddCamera Yard ok!",
        "[TRACE]loadRecogGlobal ok!",
        "[TRACE]loadControlGlobal ok!",
    };
    const bool logged = waitFor([&] { return inOrder(logTexts(log), expected); }, 20000);
    EXPECT_TRUE(logged) << joined(logTexts(log));
    for (const std::string& line : logTexts(log))
        EXPECT_EQ(line.find("AddCamera Broken"), std::string::npos) << "the broken stream joined the table";

    // The files the start writes for the services, and none for the broken stream.
    EXPECT_TRUE(waitFor([&] { return fs::exists(install.configs() / "vx_mess_config.json"); }, 20000));
    EXPECT_TRUE(fs::exists(install.configs() / "vx_recog_config_srv.json"));
    EXPECT_EQ(readFileBytes(install.configs() / "vx_stream2.json"), broken);

    // The table itself is the core's tests' business; the start saves no
    // main config of its own accord.
    EXPECT_EQ(readFileBytes(install.configs() / "vx_main_config.json"), mainBefore);
    manager->kill(9);
    manager->waitExit(5000);
}
