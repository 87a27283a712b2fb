#include <gtest/gtest.h>

#include "config/text_codec.h"
#include "core/global_commands.h"

using namespace vx;
using namespace vx::core;

namespace {

// Runs every task at once, so the order of the calls is the order in which
// the tasks were started.
std::future<void> runNow(std::function<void()> task)
{
    task();
    std::promise<void> done;
    done.set_value();
    return done.get_future();
}

struct Recorder {
    std::vector<std::string> calls;
    ProcessActions actions(bool messengerOn)
    {
        ProcessActions a;
        a.launch = runNow;
        a.threadRequests = [this](const std::string& p, bool r) { calls.push_back("recog " + p + (r ? " restart" : "")); };
        a.threadRequestsToDirect = [this](const std::string& p, bool r) { calls.push_back("control " + p + (r ? " restart" : "")); };
        a.threadRequestsToMes = [this](const std::string& p, bool r) { calls.push_back("mes " + p + (r ? " restart" : "")); };
        a.videoStart = [this](int i) { calls.push_back("start " + std::to_string(i)); };
        a.videoStop = [this](int i) { calls.push_back("stop " + std::to_string(i)); };
        a.messengerOn = [messengerOn] { return messengerOn; };
        a.saveMainConfig = [this] { calls.push_back("save"); return true; };
        return a;
    }
};

void addStreams(AppState& state, int count)
{
    for (int i = 0; i < count; ++i) {
        std::int32_t id = i;
        state.streams.addStream({}, {}, {}, id, true);
    }
}

} // namespace

TEST(GlobalCommands, StartRestartsServicesThenStartsPlannedStreams)
{
    AppState state;
    addStreams(state, 3);
    bool planned = true;
    state.streams.togglePlanned(1, planned);
    Recorder r;
    ProcessActions actions = r.actions(true);
    bool savedStarted = false;   // the save sees the new status
    actions.saveMainConfig = [&] {
        r.calls.push_back("save");
        savedStarted = state.liveMainConfig.startStatus;
        return true;
    };
    startAll(state, actions);
    EXPECT_EQ(r.calls, (std::vector<std::string>{"control /StopServer restart", "recog /StopServer restart",
                                                  "mes /StopServer restart", "save", "start 0", "start 2"}));
    EXPECT_TRUE(savedStarted);
    EXPECT_EQ(state.status.get(), config::utf8ToCp1251("Запущено всё!"));
    EXPECT_EQ(state.pendingTasks.size(), 5);

    // With the messenger off it is left alone.
    AppState off;
    Recorder quiet;
    startAll(off, quiet.actions(false));
    EXPECT_EQ(quiet.calls, (std::vector<std::string>{"control /StopServer restart", "recog /StopServer restart", "save"}));
}

TEST(GlobalCommands, StopEndsEveryStreamAndTheMessengerRegardless)
{
    AppState state;
    addStreams(state, 2);
    bool planned = true;
    state.streams.togglePlanned(0, planned);
    state.liveMainConfig.startStatus = true;
    Recorder r;
    stopAll(state, r.actions(false));
    EXPECT_EQ(r.calls, (std::vector<std::string>{"control /StopServer", "recog /StopServer", "mes /StopServer",
                                                  "stop 0", "stop 1", "save"}));
    EXPECT_FALSE(state.liveMainConfig.startStatus);
    EXPECT_EQ(state.status.get(), config::utf8ToCp1251("Остановлено всё!"));
}
