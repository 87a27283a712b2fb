#include <gtest/gtest.h>

#include "config/text_codec.h"
#include "core/global_commands.h"
#include "core/settings_fixture.h"

using namespace vx;
using namespace vx::core;

namespace {

// The settings world's requests and save, with the streams' starts and stops
// noted beside them.
struct GlobalWorld : test::SettingsWorld {
    explicit GlobalWorld(int streams)
    {
        for (std::int32_t id = 0; id < streams; ++id)
            state.streams.addStream({}, {}, {}, id, true);
        actions.videoStart = [this](int i) { calls.push_back("start " + std::to_string(i)); };
        actions.videoStop = [this](int i) { calls.push_back("stop " + std::to_string(i)); };
        actions.messengerOn = [this] { return messengerOn; };
    }
    bool messengerOn = true;
};

} // namespace

TEST(GlobalCommands, StartRestartsServicesThenStartsPlannedStreams)
{
    GlobalWorld w(3);
    bool planned = true;
    w.state.streams.togglePlanned(1, planned);
    bool savedStarted = false;   // the save sees the new status
    w.actions.saveMainConfig = [&] {
        w.calls.push_back("save");
        savedStarted = w.state.liveMainConfig.startStatus;
        return true;
    };
    startAll(w.state, w.actions);
    EXPECT_EQ(w.calls, (std::vector<std::string>{"control /StopServer restart", "recognition /StopServer restart",
                                                  "mes /StopServer restart", "save", "start 0", "start 2"}));
    EXPECT_TRUE(savedStarted);
    EXPECT_EQ(w.state.status.get(), config::utf8ToCp1251("Запущено всё!"));
    EXPECT_EQ(w.state.pendingTasks.size(), 5);

    // With the messenger off it is left alone.
    GlobalWorld off(0);
    off.messengerOn = false;
    startAll(off.state, off.actions);
    EXPECT_EQ(off.calls,
              (std::vector<std::string>{"control /StopServer restart", "recognition /StopServer restart", "save"}));
}

TEST(GlobalCommands, StopEndsEveryStreamAndTheMessengerRegardless)
{
    GlobalWorld w(2);
    bool planned = true;
    w.state.streams.togglePlanned(0, planned);
    w.state.liveMainConfig.startStatus = true;
    w.messengerOn = false;
    stopAll(w.state, w.actions);
    EXPECT_EQ(w.calls, (std::vector<std::string>{"control /StopServer", "recognition /StopServer", "mes /StopServer",
                                                  "stop 0", "stop 1", "save"}));
    EXPECT_FALSE(w.state.liveMainConfig.startStatus);
    EXPECT_EQ(w.state.status.get(), config::utf8ToCp1251("Остановлено всё!"));
}
